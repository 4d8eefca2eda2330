#include "Resampling.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <span>
#include <utility>
#include <vector>

namespace Maps
{

namespace
{

/// Where a pixel's middle lies between two lines of nodes.
struct Position
{
    int lower;
    int upper;
    double fraction; // of the way from lower to upper, in [0, 1]
};

/// \param distance in nodes from the first of `count`; may lie a rounding error outside.
Position between(double distance, int count)
{
    constexpr double kSlack = 1e-6;
    if (distance < -kSlack || distance > count - 1 + kSlack)
        throw MapError("the region reaches beyond the grid");
    const double inside = std::clamp(distance, 0.0, count - 1.0);
    const int lower = std::min(static_cast<int>(inside), count - 2);
    return {lower, lower + 1, inside - lower};
}

/// Beyond the last column the circle closes with the first, at 360 degrees.
Position aroundTheEarth(double degreesFromFirst, const Grid& grid)
{
    const double degrees = degreesFromFirst - 360.0 * std::floor(degreesFromFirst / 360.0);
    const int lower = std::min(static_cast<int>(degrees / grid.longitudeStep), grid.columns() - 1);
    const bool isLast = lower + 1 == grid.columns();
    const double from = lower * grid.longitudeStep;
    const double width = isLast ? 360.0 - from : grid.longitudeStep;
    return {lower, isLast ? 0 : lower + 1, std::clamp((degrees - from) / width, 0.0, 1.0)};
}

/// The column of a grid that does not go round the Earth, reached from either side.
Position withinTheGrid(double degreesFromFirst, const Grid& grid)
{
    const double slack = 1e-6 * grid.longitudeStep;
    const double turns = std::floor((degreesFromFirst + slack) / 360.0);
    return between((degreesFromFirst - 360.0 * turns) / grid.longitudeStep, grid.columns());
}

std::vector<Position> columnPositions(const Grid& grid, const Region& region, int width)
{
    const double step = region.longitudeSpan() / width;
    std::vector<Position> positions;
    for (int column = 0; column < width; ++column)
    {
        const double degrees = region.west + (column + 0.5) * step - grid.west;
        positions.push_back(grid.wraps() ? aroundTheEarth(degrees, grid)
                                         : withinTheGrid(degrees, grid));
    }
    return positions;
}

void checkSize(int width, int height)
{
    if (width < 2 || height < 2 || width > kLongestSide || height > kLongestSide)
        throw MapError("the picture is not between 2 and 16384 pixels wide and high");
}

float interpolate(std::span<const float> southern, std::span<const float> northern,
                  const Position& column, double northward)
{
    const auto lower = static_cast<std::size_t>(column.lower);
    const auto upper = static_cast<std::size_t>(column.upper);
    const double east = column.fraction;
    const double south = southern[lower] + east * (double{southern[upper]} - southern[lower]);
    const double north = northern[lower] + east * (double{northern[upper]} - northern[lower]);
    return static_cast<float>(south + northward * (north - south));
}

} // namespace

Field resample(const Grid& grid, const Region& region, int width, int height)
{
    checkRegion(region);
    checkSize(width, height);
    if (grid.heights.isEmpty()) throw MapError("there is no grid to sample");

    const std::vector<Position> columns = columnPositions(grid, region, width);
    const double rowStep = region.latitudeSpan() / height;

    std::vector<float> values;
    values.reserve(sampleCount(width, height));
    for (int row = 0; row < height; ++row)
    {
        const double latitude = region.north - (row + 0.5) * rowStep;
        const Position lines = between((latitude - grid.south) / grid.latitudeStep, grid.rows());
        const std::span<const float> southern = grid.heights.row(lines.lower);
        const std::span<const float> northern = grid.heights.row(lines.upper);
        for (const Position& column : columns)
            values.push_back(interpolate(southern, northern, column, lines.fraction));
    }
    return {region, Raster<float>(width, height, std::move(values))};
}

} // namespace Maps
