#include "Earth.h"
#include <Distance.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

namespace Maps
{
namespace
{

constexpr double kKilometresPerDegree = kEarthRadiusInMetres / 1000.0 * kRadiansPerDegree;

bool never()
{
    return false;
}

template <class Height>
Field fieldOf(const Region& region, int width, int height, Height&& heightAt)
{
    std::vector<float> values;
    for (int row = 0; row < height; ++row)
        for (int column = 0; column < width; ++column)
            values.push_back(static_cast<float>(heightAt(column, row)));
    return {region, Raster<float>(width, height, values)};
}

TEST(DistanceToLevel, IsTheWayAlongAMeridianFromALineAlongTheEquator)
{
    const Field field = fieldOf({}, 36, 18, [](int, int row) { return row < 9 ? 5.0 : -5.0; });
    const Field distance = *distanceToLevel(field, 0.0, never);
    ASSERT_EQ(distance.width(), 36);
    ASSERT_EQ(distance.height(), 18);
    EXPECT_EQ(distance.region, field.region);
    for (int row = 0; row < 18; ++row)
        for (int column = 0; column < 36; ++column)
            EXPECT_NEAR(distance.values.at(column, row),
                        distance.latitude(row) * kKilometresPerDegree, 0.1);
}

TEST(DistanceToLevel, GoesRoundTheEarthWhereTheRegionDoes)
{
    // The level is crossed west of column 3 and at the date line.
    const auto land = [](int column, int) { return column < 3 ? 1.0 : -1.0; };
    const Field round = fieldOf({-180.0, 180.0, -1.0, 1.0}, 36, 2, land);
    const Field part = fieldOf({0.0, 180.0, -1.0, 1.0}, 36, 2, land);
    const float beyond = distanceToLevel(round, 0.0, never)->values.at(35, 0);
    EXPECT_NEAR(beyond, -5.0 * kKilometresPerDegree, 1.0);
    EXPECT_NEAR(distanceToLevel(part, 0.0, never)->values.at(35, 0),
                -(32.5 * 5.0) * kKilometresPerDegree, 5.0);
}

TEST(DistanceToLevel, APixelAtTheLevelIsAboveIt)
{
    const Field field = fieldOf({}, 8, 4, [](int column, int) { return column < 4 ? 2.0 : 1.0; });
    const Field distance = *distanceToLevel(field, 2.0, never);
    EXPECT_GT(distance.values.at(0, 0), 0.0F);
    EXPECT_LT(distance.values.at(7, 0), 0.0F);
}

TEST(DistanceToLevel, IsZeroWhereTheLevelIsNotCrossed)
{
    const Field field = fieldOf({}, 4, 3, [](int, int) { return 1.0; });
    for (const double level : {0.0, 2.0})
    {
        const Field distance = *distanceToLevel(field, level, never);
        EXPECT_THAT(distance.values.samples(), testing::Each(0.0F));
    }
}

TEST(DistanceToLevel, StopsBeforeTheRowWhereItIsTold)
{
    const Field field = fieldOf({}, 4, 3, [](int column, int) { return column - 1.5; });
    int asked = 0;
    EXPECT_FALSE(distanceToLevel(field, 0.0, [&] { return ++asked == 3; }));
    EXPECT_EQ(asked, 3);
    asked = 0;
    EXPECT_TRUE(distanceToLevel(field, 0.0, [&] { return ++asked == 4; }));
}

TEST(DistanceToLevel, RefusesNothingAndLevelsThatAreNone)
{
    EXPECT_THROW(distanceToLevel({}, 0.0, never), MapError);
    EXPECT_THROW(coarseDistanceToLevel({}, 0.0, 8), MapError);
    const Field field = fieldOf({}, 2, 2, [](int, int) { return 0.0; });
    for (const double level : {std::numeric_limits<double>::infinity(), std::nan("")})
        EXPECT_THROW(distanceToLevel(field, level, never), MapError);
}

TEST(CoarseDistanceToLevel, IsTheFineOneAtStepOne)
{
    const Field field =
        fieldOf({}, 24, 12, [](int column, int row) { return std::sin(column) + std::cos(row); });
    EXPECT_EQ(coarseDistanceToLevel(field, 0.3, 1), *distanceToLevel(field, 0.3, never));
}

TEST(CoarseDistanceToLevel, IsOffByAboutItsStepAndHasThePixelsOfTheField)
{
    const Field field =
        fieldOf({}, 90, 45, [](int, int row) { return row < 22 ? 5.0 : -5.0; }); // 4 degrees
    const Field fine = *distanceToLevel(field, 0.0, never);
    const Field coarse = coarseDistanceToLevel(field, 0.0, 8);
    ASSERT_EQ(coarse.width(), 90);
    ASSERT_EQ(coarse.height(), 45);
    for (int row = 0; row < 45; ++row)
        EXPECT_NEAR(coarse.values.at(7, row), fine.values.at(7, row),
                    8 * 4.0 * kKilometresPerDegree);
}

} // namespace
} // namespace Maps
