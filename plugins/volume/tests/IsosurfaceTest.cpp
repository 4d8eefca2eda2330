#include "Isosurface.h"
#include <plugins/volume/tests/Support.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <random>

namespace Volumes
{
namespace
{

constexpr double kRadius = 10.0;
constexpr Counts kCounts{27, 29, 31};
constexpr Vector kMiddle{0.3, -0.2, 0.1}; // on no voxel

Mesh sphere(const Affine& toWorld)
{
    return isosurface(volumeOf(kCounts, toWorld, ballAround(kMiddle)), -kRadius);
}

/// The same places of the world, with the first axis of the lattice reversed: left-handed.
Affine mirrored(const Affine& toWorld)
{
    return {-1.0 * toWorld.x, toWorld.y, toWorld.z, toWorld.place({kCounts[0] - 1.0, 0.0, 0.0})};
}

void expectSphere(const Mesh& mesh)
{
    const double area = 4.0 * std::numbers::pi * kRadius * kRadius;
    ASSERT_FALSE(mesh.isEmpty());
    EXPECT_TRUE(isClosed(mesh));
    EXPECT_NEAR(areaOf(mesh) / area, 1.0, 0.02);
    EXPECT_NEAR(contentOf(mesh) / (area * kRadius / 3.0), 1.0, 0.02);
    for (const Vertex& vertex : mesh.vertices())
    {
        const Vector outwards = vectorOf(vertex.place) - kMiddle;
        EXPECT_NEAR(length(outwards), kRadius, 0.06);
        EXPECT_GT(dot(vectorOf(vertex.normal), direction(outwards)), 0.995);
    }
}

/// Whether a vertex of the mesh stands at that place.
bool hasVertexAt(const Mesh& mesh, const Vector& place)
{
    return std::ranges::any_of(mesh.vertices(), [&](const Vertex& vertex) {
        return length(vectorOf(vertex.place) - place) < 1e-4;
    });
}

TEST(Isosurface, OfABallIsASphereThatIsClosedAndOutwards)
{
    expectSphere(sphere(centred(kCounts, 1.0)));
}

TEST(Isosurface, OfABallIsASphereOnASkewLatticeToo)
{
    const double turn = 0.4;
    const Affine skew{{std::cos(turn), std::sin(turn), 0.0},
                      {-1.1 * std::sin(turn), 1.1 * std::cos(turn), 0.1},
                      {0.1, 0.0, 0.9},
                      {}};
    Affine centredSkew = skew;
    centredSkew.origin = -1.0 * skew.place({13.0, 14.0, 15.0});

    expectSphere(sphere(centredSkew));
}

TEST(Isosurface, OfAMirroredLatticeIsOutwardsToo)
{
    const Mesh mesh = sphere(mirrored(centred(kCounts, 1.0)));

    expectSphere(mesh);
    EXPECT_GT(contentOf(mesh), 0.0);
}

TEST(Isosurface, StandsAtTheSamePlacesWhicheverWayTheLatticeIsStored)
{
    // All three axes reversed: the cells' diagonals stay, so the vertices are the same ones.
    const Counts counts{11, 12, 13};
    const Affine plain = centred(counts, 1.0);
    const Affine reversed{-1.0 * plain.x, -1.0 * plain.y, -1.0 * plain.z,
                          plain.place({counts[0] - 1.0, counts[1] - 1.0, counts[2] - 1.0})};

    const Mesh one = isosurface(volumeOf(counts, plain, ballAround(kMiddle)), -4.0);
    const Mesh other = isosurface(volumeOf(counts, reversed, ballAround(kMiddle)), -4.0);

    ASSERT_FALSE(one.isEmpty());
    EXPECT_EQ(one.vertices().size(), other.vertices().size());
    EXPECT_EQ(one.triangles().size(), other.triangles().size());
    for (const Vertex& vertex : one.vertices())
        EXPECT_TRUE(hasVertexAt(other, vectorOf(vertex.place)));
}

TEST(Isosurface, OfNoiseIsClosedWhereItIsSurroundedByLowValues)
{
    std::mt19937 random(4711);
    const Counts counts{9, 8, 7};
    for (int round = 0; round < 50; ++round)
    {
        std::vector<float> samples;
        for (int k = 0; k < counts[2]; ++k)
            for (int j = 0; j < counts[1]; ++j)
                for (int i = 0; i < counts[0]; ++i)
                {
                    const bool isOuter = i == 0 || j == 0 || k == 0 || i == counts[0] - 1 ||
                                         j == counts[1] - 1 || k == counts[2] - 1;
                    // Few values, so that many are equal to the level.
                    samples.push_back(isOuter ? 0.0F : static_cast<float>(random() % 4));
                }
        const Mesh mesh = isosurface(Volume(counts, {}, std::move(samples)), 2.0);

        EXPECT_TRUE(isClosed(mesh));
        EXPECT_GT(contentOf(mesh), 0.0);
        for (const Triangle& triangle : mesh.triangles())
            EXPECT_GT(length(areaOf(mesh, triangle)), 0.0);
    }
}

TEST(Isosurface, OfAPlaneIsExact)
{
    const Counts counts{6, 6, 6};
    const Mesh mesh = isosurface(
        volumeOf(counts, centred(counts, 1.5), [](const Vector& place) { return -place.z; }), 0.4);

    ASSERT_FALSE(mesh.isEmpty());
    for (const Vertex& vertex : mesh.vertices())
    {
        EXPECT_NEAR(vertex.place[2], -0.4, 1e-5);
        EXPECT_EQ(vertex.normal, (std::array<float, 3>{0.0F, 0.0F, 1.0F}));
    }
    EXPECT_NEAR(areaOf(mesh), 7.5 * 7.5, 1e-3);
}

TEST(Isosurface, IsEmptyWhereNothingPassesTheLevel)
{
    const Counts counts{3, 3, 3};
    const Volume volume =
        volumeOf(counts, centred(counts, 1.0), [](const Vector& place) { return place.x; });

    EXPECT_TRUE(isosurface(volume, 5.0).isEmpty());
    EXPECT_TRUE(isosurface(volume, -5.0).isEmpty());
    EXPECT_TRUE(isosurface(Volume(), 0.0).isEmpty());
    EXPECT_TRUE(isosurface(Volume({5, 5, 1}, {}, std::vector<float>(25)), 0.0).isEmpty());
}

TEST(Isosurface, RefusesALevelThatIsNotFinite)
{
    for (const double bad : {std::nan(""), std::numeric_limits<double>::infinity()})
        EXPECT_EQ(errorOf([&] { isosurface(Volume(), bad); }),
                  "the level of the surface is not a finite number");
}

} // namespace
} // namespace Volumes
