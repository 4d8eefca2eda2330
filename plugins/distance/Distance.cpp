#include "Distance.h"

#include "Earth.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace Maps
{
namespace
{

constexpr double kKilometres = kEarthRadiusInMetres / 1000.0; // of a radian along a great circle

/// A place on the unit sphere.
struct Place
{
    static Place of(double longitude, double latitude)
    {
        const double east = longitude * kRadiansPerDegree;
        const double north = latitude * kRadiansPerDegree;
        return {std::cos(north) * std::cos(east), std::cos(north) * std::sin(east),
                std::sin(north)};
    }

    double cosineTo(const Place& other) const { return x * other.x + y * other.y + z * other.z; }

    double x;
    double y;
    double z;
};

std::size_t sizeOf(const Field& field)
{
    return sampleCount(field.width(), field.height());
}

/// Where the level is crossed between neighbours in a row or a column.
std::vector<Place> crossings(const Field& heights, double level)
{
    const auto isAbove = [&](int column, int row) {
        return heights.values.at(column, row) >= level;
    };
    const int columns = heights.width();
    const int lastPair = heights.region.wraps() ? columns : columns - 1;
    std::vector<Place> places;
    for (int row = 0; row < heights.height(); ++row)
    {
        const double latitude = heights.latitude(row);
        for (int column = 0; column < lastPair; ++column)
            if (isAbove(column, row) != isAbove((column + 1) % columns, row))
                places.push_back(Place::of(
                    heights.longitude(column) + heights.degreesPerColumn() / 2, latitude));
        if (row + 1 == heights.height()) break;
        for (int column = 0; column < columns; ++column)
            if (isAbove(column, row) != isAbove(column, row + 1))
                places.push_back(
                    Place::of(heights.longitude(column), latitude - heights.degreesPerRow() / 2));
    }
    return places;
}

double distanceToNearest(const Place& place, const std::vector<Place>& places)
{
    double nearest = -1.0;
    for (const Place& candidate : places) nearest = std::max(nearest, place.cosineTo(candidate));
    return kKilometres * std::acos(std::clamp(nearest, -1.0, 1.0));
}

void checkInput(const Field& heights, double level)
{
    if (heights.values.isEmpty()) throw MapError("there are no heights to measure from");
    if (!std::isfinite(level)) throw MapError("the level is no number of metres");
}

/// The mean of the pixels of a cell; cells at the end may be smaller.
float meanOf(const Field& field, int firstColumn, int firstRow, int step)
{
    double sum = 0.0;
    int count = 0;
    for (int row = firstRow; row < std::min(firstRow + step, field.height()); ++row)
        for (int column = firstColumn; column < std::min(firstColumn + step, field.width());
             ++column, ++count)
            sum += field.values.at(column, row);
    return static_cast<float>(sum / count);
}

Field shrunk(const Field& field, int step)
{
    const int width = (field.width() + step - 1) / step;
    const int height = (field.height() + step - 1) / step;
    std::vector<float> means;
    means.reserve(sampleCount(width, height));
    for (int row = 0; row < height; ++row)
        for (int column = 0; column < width; ++column)
            means.push_back(meanOf(field, column * step, row * step, step));
    return {field.region, Raster<float>(width, height, std::move(means))};
}

/// The two samples on either side of a position, and the share of the second.
struct Between
{
    Between(double position, int count, bool wraps)
    {
        const int floor = static_cast<int>(std::floor(position));
        share = position - floor;
        const auto bring = [&](int index) {
            return wraps ? (index + count) % count : std::clamp(index, 0, count - 1);
        };
        first = bring(floor);
        second = bring(floor + 1);
    }

    int first;
    int second;
    double share;
};

Field stretched(const Field& small, const Field& like)
{
    std::vector<float> values;
    values.reserve(sizeOf(like));
    const double rowScale = static_cast<double>(small.height()) / like.height();
    const double columnScale = static_cast<double>(small.width()) / like.width();
    for (int row = 0; row < like.height(); ++row)
    {
        const Between rows((row + 0.5) * rowScale - 0.5, small.height(), false);
        for (int column = 0; column < like.width(); ++column)
        {
            const Between columns((column + 0.5) * columnScale - 0.5, small.width(),
                                  small.region.wraps());
            const auto along = [&](int sampleRow) {
                return std::lerp(small.values.at(columns.first, sampleRow),
                                 small.values.at(columns.second, sampleRow), columns.share);
            };
            values.push_back(
                static_cast<float>(std::lerp(along(rows.first), along(rows.second), rows.share)));
        }
    }
    return {like.region, Raster<float>(like.width(), like.height(), std::move(values))};
}

} // namespace

std::optional<Field> distanceToLevel(const Field& heights, double level,
                                     const std::function<bool()>& isToStop)
{
    checkInput(heights, level);
    const std::vector<Place> line = crossings(heights, level);
    std::vector<float> distances;
    distances.reserve(sizeOf(heights));
    for (int row = 0; row < heights.height(); ++row)
    {
        if (isToStop()) return std::nullopt;
        for (int column = 0; column < heights.width(); ++column)
        {
            const Place place = Place::of(heights.longitude(column), heights.latitude(row));
            const double distance = line.empty() ? 0.0 : distanceToNearest(place, line);
            const bool isAbove = heights.values.at(column, row) >= level;
            distances.push_back(static_cast<float>(isAbove ? distance : -distance));
        }
    }
    return Field{heights.region,
                 Raster<float>(heights.width(), heights.height(), std::move(distances))};
}

Field coarseDistanceToLevel(const Field& heights, double level, int step)
{
    checkInput(heights, level);
    const Field small = shrunk(heights, step);
    return stretched(*distanceToLevel(small, level, [] { return false; }), heights);
}

} // namespace Maps
