#include "Hillshade.h"

#include "Earth.h"

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

void checkLight(const Light& light)
{
    if (!std::isfinite(light.azimuth)) throw MapError("the light's azimuth is not finite");
    if (!(light.altitude > 0.0 && light.altitude <= 90.0))
        throw MapError("the light's altitude is not between 0 and 90 degrees");
    if (!(light.exaggeration >= 0.0 && std::isfinite(light.exaggeration)))
        throw MapError("the exaggeration is not a positive number");
}

/// A pixel and its neighbours on both sides. At an edge the pixel stands in for the missing one.
struct Neighbours
{
    int before;
    int after;
    int distance; // from one to the other in pixels: 2, or 1 at an edge
};

Neighbours neighbours(int place, int count, bool wraps)
{
    if (wraps) return {(place + count - 1) % count, (place + 1) % count, 2};
    const int before = std::max(place - 1, 0);
    const int after = std::min(place + 1, count - 1);
    return {before, after, std::max(after - before, 1)};
}

/// The light as a vector that points to it.
struct Direction
{
    explicit Direction(const Light& light)
        : east(std::cos(light.altitude * kRadiansPerDegree) *
               std::sin(light.azimuth * kRadiansPerDegree)),
          north(std::cos(light.altitude * kRadiansPerDegree) *
                std::cos(light.azimuth * kRadiansPerDegree)),
          up(std::sin(light.altitude * kRadiansPerDegree))
    {
    }

    /// \param p, q  the slopes eastward and northward
    float shade(double p, double q) const
    {
        const double cosine = (up - p * east - q * north) / std::sqrt(1.0 + p * p + q * q);
        return static_cast<float>(std::clamp(cosine, 0.0, 1.0));
    }

    double east;
    double north;
    double up;
};

/// Three values in a line of Horn's window, the middle one counted twice.
double weighted(double first, double middle, double last)
{
    return first + 2.0 * middle + last;
}

} // namespace

double shadeOfLevelGround(const Light& light)
{
    return std::sin(light.altitude * kRadiansPerDegree);
}

Field hillshade(const Field& heights, const Light& light)
{
    checkLight(light);
    if (heights.values.isEmpty()) return heights;

    const Direction direction(light);
    const double metresPerDegree = kEarthRadiusInMetres * kRadiansPerDegree;
    const double rowDistance = heights.degreesPerRow() * metresPerDegree;
    std::vector<float> shades;
    shades.reserve(heights.values.samples().size());
    for (int row = 0; row < heights.height(); ++row)
    {
        const Neighbours rows = neighbours(row, heights.height(), false);
        const std::span<const float> north = heights.values.row(rows.before);
        const std::span<const float> middle = heights.values.row(row);
        const std::span<const float> south = heights.values.row(rows.after);
        const double columnDistance = heights.degreesPerColumn() * metresPerDegree *
                                      std::cos(heights.latitude(row) * kRadiansPerDegree);
        for (int column = 0; column < heights.width(); ++column)
        {
            const Neighbours columns = neighbours(column, heights.width(), heights.region.wraps());
            const auto w = static_cast<std::size_t>(columns.before);
            const auto c = static_cast<std::size_t>(column);
            const auto e = static_cast<std::size_t>(columns.after);
            const double eastward =
                weighted(north[e], middle[e], south[e]) - weighted(north[w], middle[w], south[w]);
            const double northward =
                weighted(north[w], north[c], north[e]) - weighted(south[w], south[c], south[e]);
            const double p = eastward / (4.0 * columns.distance * columnDistance);
            const double q = northward / (4.0 * rows.distance * rowDistance);
            shades.push_back(direction.shade(light.exaggeration * p, light.exaggeration * q));
        }
    }
    return {heights.region, Raster<float>(heights.width(), heights.height(), std::move(shades))};
}

} // namespace Maps
