#include "Volume.h"
#include <plugins/volume/tests/Support.h>

#include <gtest/gtest.h>

#include <cmath>

namespace Volumes
{
namespace
{

constexpr Counts kCounts{4, 5, 6};
constexpr Affine kAffine{{-2.0, 0.0, 0.0}, {0.0, 0.0, 3.0}, {0.0, 1.5, 0.0}, {10.0, 20.0, 30.0}};

double linear(const Vector& place)
{
    return 1.0 + 2.0 * place.x - 0.5 * place.y + 0.25 * place.z;
}

TEST(Volume, IsExactBetweenVoxelsOfALinearFunction)
{
    const Volume volume = volumeOf(kCounts, kAffine, linear);

    for (const Vector& place : {Vector{0, 0, 0}, Vector{1.25, 2.5, 4.75}, Vector{3, 4, 5}})
        EXPECT_NEAR(volume.between(place), linear(kAffine.place(place)), 1e-5);
}

TEST(Volume, HasNoValueBeyondItsOuterVoxels)
{
    const Volume volume = volumeOf(kCounts, kAffine, linear);

    EXPECT_TRUE(std::isnan(volume.between({-0.1, 0.0, 0.0})));
    EXPECT_TRUE(std::isnan(volume.between({0.0, 4.1, 0.0})));
    EXPECT_TRUE(std::isnan(volume.between({0.0, 0.0, std::nan("")})));
}

TEST(Volume, TellsItsPlaceInTheWorldWhicheverWayItsAxesRun)
{
    const Volume volume = volumeOf(kCounts, kAffine, linear);

    EXPECT_EQ(volume.spacing(), (Vector{2.0, 3.0, 1.5}));
    EXPECT_EQ(volume.extent().low, (Vector{4.0, 20.0, 30.0}));
    EXPECT_EQ(volume.extent().high, (Vector{10.0, 27.5, 42.0}));
}

TEST(Volume, IsEqualByItsSamplesAndItsPlace)
{
    const Volume volume = volumeOf(kCounts, kAffine, linear);
    Affine elsewhere = kAffine;
    elsewhere.origin.x += 1.0;

    EXPECT_EQ(volume, volumeOf(kCounts, kAffine, linear));
    EXPECT_NE(volume,
              Volume(kCounts, elsewhere, {volume.samples().begin(), volume.samples().end()}));
    EXPECT_NE(volume, volumeOf(kCounts, kAffine, [](const Vector&) { return 0.0; }));
    EXPECT_EQ(Volume(), Volume());
}

TEST(Volume, RefusesWhatIsNoLattice)
{
    EXPECT_EQ(errorOf([] { Volume({2, 2, 2}, {}, std::vector<float>(7)); }),
              "a volume needs a sample for each voxel");
    EXPECT_EQ(errorOf([] { Volume({2, 0, 2}, {}, {}); }), "a volume needs a sample for each voxel");
    EXPECT_EQ(
        errorOf([] { Volume({1, 1, 1}, {{}, {0, 1, 0}, {0, 0, 1}, {}}, std::vector<float>(1)); }),
        "the voxels of a volume have no size");
}

} // namespace
} // namespace Volumes
