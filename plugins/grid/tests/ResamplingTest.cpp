#include "Resampling.h"
#include "Earth.h"
#include <plugins/grid/tests/Support.h>

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace Maps
{
namespace
{

template <class Function>
Grid gridOf(Grid grid, int columns, int rows, Function&& heightAt)
{
    std::vector<float> heights;
    for (int row = 0; row < rows; ++row)
        for (int column = 0; column < columns; ++column)
            heights.push_back(static_cast<float>(heightAt(grid.west + column * grid.longitudeStep,
                                                          grid.south + row * grid.latitudeStep)));
    grid.heights = Raster<float>(columns, rows, std::move(heights));
    return grid;
}

double linear(double longitude, double latitude)
{
    return 3.0 + 0.5 * longitude - 0.25 * latitude;
}

double wave(double longitude, double latitude)
{
    return std::cos(longitude * kRadiansPerDegree) + latitude;
}

/// A global grid of ten degrees.
template <class Function>
Grid globe(double west, int columns, Function&& heightAt)
{
    return gridOf({west, -90.0, 10.0, 10.0, {}}, columns, 19, heightAt);
}

TEST(Resampling, IsExactOnLinearFields)
{
    const Grid grid = gridOf({20.0, -10.0, 2.0, 1.0, {}}, 21, 31, linear);
    const Region region{21.3, 58.9, -9.7, 19.1};

    const Field field = resample(grid, region, 37, 53);

    const Field expected = fieldOf(region, 37, 53, linear);
    ASSERT_EQ(field.width(), 37);
    ASSERT_EQ(field.height(), 53);
    for (int row = 0; row < 53; ++row)
        for (int column = 0; column < 37; ++column)
            EXPECT_NEAR(field.values.at(column, row), expected.values.at(column, row), 1e-5);
}

TEST(Resampling, PutsNorthOnTopAndWestToTheLeft)
{
    const Grid grid = gridOf({0.0, 0.0, 1.0, 1.0, {}}, 3, 3, [](double longitude, double latitude) {
        return 10.0 * latitude + longitude;
    });

    const Field field = resample(grid, {0.0, 2.0, 0.0, 2.0}, 2, 2);

    EXPECT_FLOAT_EQ(field.values.at(0, 0), 15.5F);
    EXPECT_FLOAT_EQ(field.values.at(1, 0), 16.5F);
    EXPECT_FLOAT_EQ(field.values.at(0, 1), 5.5F);
}

TEST(Resampling, CrossesTheDateLineWithoutASeam)
{
    const Grid grid = globe(-180.0, 36, wave);

    const Field field = resample(grid, {175.0, -175.0, -5.0, 5.0}, 10, 2);

    const double atNodes[] = {wave(170.0, 2.5), wave(180.0, 2.5)};
    for (int column = 0; column < 5; ++column)
    {
        const double part = (field.longitude(column) - 170.0) / 10.0;
        const double expected = atNodes[0] + part * (atNodes[1] - atNodes[0]);
        EXPECT_NEAR(field.values.at(column, 0), expected, 1e-5);
        EXPECT_NEAR(field.values.at(9 - column, 0), expected, 1e-5);
    }
}

TEST(Resampling, DoesNotDependOnWhereLongitudesStart)
{
    const Grid fromDateLine = globe(-180.0, 36, wave);
    const Grid fromGreenwich = globe(0.0, 36, wave);
    const Grid repeating = globe(-180.0, 37, wave);
    const Region region{-200.0, 100.0, -80.0, 80.0};
    const Region turned{160.0, 100.0, -80.0, 80.0};

    const Field field = resample(fromDateLine, region, 61, 17);

    const Field others[] = {resample(fromGreenwich, region, 61, 17),
                            resample(repeating, region, 61, 17),
                            resample(fromDateLine, turned, 61, 17)};
    for (const Field& other : others)
        for (std::size_t i = 0; i < field.values.samples().size(); ++i)
            EXPECT_NEAR(field.values.samples()[i], other.values.samples()[i], 1e-5);
}

TEST(Resampling, ReachesBothPoles)
{
    const Grid grid = globe(-180.0, 36, [](double, double latitude) { return latitude; });

    const Field field = resample(grid, {}, 4, 180);

    EXPECT_NEAR(field.values.at(0, 0), 89.5, 1e-4);
    EXPECT_NEAR(field.values.at(3, 179), -89.5, 1e-4);
}

TEST(Resampling, RefusesARegionBeyondTheGrid)
{
    const Grid grid = gridOf({0.0, 0.0, 1.0, 1.0, {}}, 11, 11, linear);
    const Region beyond[] = {{-5, 5, 0, 10}, {5, 15, 0, 10}, {0, 10, -5, 5}, {0, 10, 5, 15}};

    for (const Region& region : beyond)
        EXPECT_EQ(errorOf([&] { resample(grid, region, 20, 20); }),
                  "the region reaches beyond the grid");
    EXPECT_NO_THROW(resample(grid, {0, 10, 0, 10}, 20, 20));
    EXPECT_NO_THROW(resample(grid, {-360, -350, 0, 10}, 20, 20));
}

TEST(Resampling, RefusesBadSizesRegionsAndGrids)
{
    const Grid grid = globe(-180.0, 36, linear);

    for (const int bad : {-1, 0, 1, kLongestSide + 1})
    {
        EXPECT_EQ(errorOf([&] { resample(grid, {}, bad, 10); }),
                  "the picture is not between 2 and 16384 pixels wide and high");
        EXPECT_EQ(errorOf([&] { resample(grid, {}, 10, bad); }),
                  "the picture is not between 2 and 16384 pixels wide and high");
    }
    EXPECT_EQ(errorOf([&] { resample(grid, {0, 10, 10, 0}, 10, 10); }),
              "the region's north is not north of its south");
    EXPECT_EQ(errorOf([] { resample({}, {}, 10, 10); }), "there is no grid to sample");
}

} // namespace
} // namespace Maps
