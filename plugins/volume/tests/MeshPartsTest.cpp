#include "MeshParts.h"
#include "Isosurface.h"
#include <plugins/volume/tests/Support.h>

#include <gtest/gtest.h>

#include <algorithm>

namespace Volumes
{
namespace
{

constexpr Counts kCounts{40, 16, 16};

/// Two balls of radius 5 and 3, apart.
Mesh twoBalls()
{
    const Vector large{-9.0, 0.2, 0.1};
    const Vector small{10.0, 0.1, -0.3};
    return isosurface(volumeOf(kCounts, centred(kCounts, 1.0),
                               [&](const Vector& place) {
                                   return std::max(5.0 - length(place - large),
                                                   3.0 - length(place - small));
                               }),
                      0.0);
}

TEST(MeshParts, KeepsTheLargestOne)
{
    const Mesh mesh = largestParts(twoBalls(), 1);

    EXPECT_TRUE(isClosed(mesh));
    EXPECT_LT(mesh.triangles().size(), twoBalls().triangles().size());
    for (const Vertex& vertex : mesh.vertices()) EXPECT_LT(vertex.place[0], 0.0F);
}

TEST(MeshParts, KeepsAllIfThereAreNoMoreOrIfToldSo)
{
    EXPECT_EQ(largestParts(twoBalls(), 2), twoBalls());
    EXPECT_EQ(largestParts(twoBalls(), 100), twoBalls());
    EXPECT_EQ(largestParts(twoBalls(), 0), twoBalls());
    EXPECT_EQ(largestParts(Mesh(), 1), Mesh());
}

TEST(MeshParts, RefusesANegativeCount)
{
    EXPECT_EQ(errorOf([] { largestParts(Mesh(), -1); }), "the number of parts to keep is negative");
}

} // namespace
} // namespace Volumes
