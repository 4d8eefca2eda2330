#include "Slice.h"
#include <plugins/volume/tests/Support.h>

#include <gtest/gtest.h>

#include <cmath>

namespace Volumes
{
namespace
{

constexpr Counts kCounts{9, 11, 13};

/// Brightest at the right, the front and the top, each by its own factor.
double slope(const Vector& place)
{
    return 100.0 * place.x + 10.0 * place.y + place.z;
}

Volume slopes(const Affine& toWorld)
{
    return volumeOf(kCounts, toWorld, slope);
}

/// The same places of the world, with all axes of the lattice reversed.
Affine reversed(const Affine& toWorld)
{
    return {-1.0 * toWorld.x, -1.0 * toWorld.y, -1.0 * toWorld.z,
            toWorld.place({kCounts[0] - 1.0, kCounts[1] - 1.0, kCounts[2] - 1.0})};
}

TEST(Slice, AcrossZHasTheRightSideAtTheRightAndTheFrontAtTheTop)
{
    const auto slice = cut(slopes(centred(kCounts, 2.0)), Axis::Z, 3.0, 2.0);

    ASSERT_EQ(slice.width(), 9);
    ASSERT_EQ(slice.height(), 11);
    EXPECT_NEAR(slice.at(0, 0), slope({-8, 10, 3}), 1e-3);
    EXPECT_NEAR(slice.at(8, 10), slope({8, -10, 3}), 1e-3);
}

TEST(Slice, AcrossYHasTheRightSideAtTheRightAndTheTopAtTheTop)
{
    const auto slice = cut(slopes(centred(kCounts, 2.0)), Axis::Y, -1.0, 2.0);

    ASSERT_EQ(slice.width(), 9);
    ASSERT_EQ(slice.height(), 13);
    EXPECT_NEAR(slice.at(0, 0), slope({-8, -1, 12}), 1e-3);
    EXPECT_NEAR(slice.at(8, 12), slope({8, -1, -12}), 1e-3);
}

TEST(Slice, AcrossXHasTheFrontAtTheRightAndTheTopAtTheTop)
{
    const auto slice = cut(slopes(centred(kCounts, 2.0)), Axis::X, 5.0, 2.0);

    ASSERT_EQ(slice.width(), 11);
    ASSERT_EQ(slice.height(), 13);
    EXPECT_NEAR(slice.at(0, 0), slope({5, -10, 12}), 1e-3);
    EXPECT_NEAR(slice.at(10, 12), slope({5, 10, -12}), 1e-3);
}

TEST(Slice, IsTheSameWhicheverWayTheAxesOfTheLatticeRun)
{
    const Affine plain = centred(kCounts, 2.0);

    for (const Axis axis : {Axis::X, Axis::Y, Axis::Z})
        EXPECT_EQ(cut(slopes(plain), axis, 1.0, 1.0), cut(slopes(reversed(plain)), axis, 1.0, 1.0));
}

TEST(Slice, HasProportionsInMillimetresNotInVoxels)
{
    const Affine uneven{{0.5, 0, 0}, {0, 1, 0}, {0, 0, 3}, {}};

    const auto slice = cut(volumeOf({21, 11, 5}, uneven, slope), Axis::Y, 5.0, 1.0);

    EXPECT_EQ(slice.width(), 11);  // 10 mm
    EXPECT_EQ(slice.height(), 13); // 12 mm
}

TEST(Slice, RefusesPlanesBesideTheVolumeAndBadSteps)
{
    const Volume volume = slopes(centred(kCounts, 2.0));

    EXPECT_EQ(errorOf([&] { cut(volume, Axis::X, 8.5, 1.0); }),
              "the position of the slice is not between -8 and 8 mm");
    EXPECT_EQ(errorOf([&] { cut(Volume(), Axis::X, 0.0, 1.0); }), "there is no volume to cut");
    for (const double step : {0.0, -1.0, 1e-9, std::nan("")})
        EXPECT_EQ(errorOf([&] { cut(volume, Axis::X, 0.0, step); }),
                  "the step of the slice is not positive, or gives more than 8192 pixels a side");
}

TEST(Slice, IsBlackAtTheLowEndWhiteAtTheHighAndWhereNothingIsBlack)
{
    const Maps::Raster<float> values(5, 1, {-5.0F, 0.0F, 5.0F, 10.0F, std::nanf("")});

    const Maps::Image grey = Maps::encode(inGrey(values, 0.0, 10.0));

    EXPECT_EQ(grey.at(0, 0), (Maps::Rgb{0, 0, 0}));
    EXPECT_EQ(grey.at(1, 0), (Maps::Rgb{0, 0, 0}));
    EXPECT_EQ(grey.at(2, 0), (Maps::Rgb{128, 128, 128}));
    EXPECT_EQ(grey.at(3, 0), (Maps::Rgb{255, 255, 255}));
    EXPECT_EQ(grey.at(4, 0), (Maps::Rgb{0, 0, 0}));
    EXPECT_EQ(errorOf([&] { inGrey(values, 1.0, 1.0); }),
              "the range of grey is empty or not finite");
}

} // namespace
} // namespace Volumes
