#include "Profile.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <utility>
#include <vector>

namespace Maps
{
namespace
{

/// The pixels on either side of a place, and how far it is from the first to the second.
struct Between
{
    int first;
    int second;
    double part;
};

/// \param offset pixels from the edge; the middle of the first pixel is at 0.5.
Between betweenMiddles(double offset, int count)
{
    const double inside = std::clamp(offset - 0.5, 0.0, count - 1.0);
    const int first = std::min(static_cast<int>(inside), count - 1);
    return {first, std::min(first + 1, count - 1), inside - first};
}

Between betweenMiddlesOnCircle(double offset, int count)
{
    const double whole = std::floor(offset - 0.5);
    const int first = (static_cast<int>(whole) % count + count) % count;
    return {first, (first + 1) % count, offset - 0.5 - whole};
}

/// Degrees east of the region's western edge, in [0, 360) but for a place on the eastern edge.
double degreesFromWest(const Region& region, double longitude)
{
    constexpr double kSlack = 1e-9;
    const double turned = std::fmod(longitude - region.west, 360.0);
    const double east = turned < 0.0 ? turned + 360.0 : turned;
    return east > 360.0 - kSlack ? 0.0 : east;
}

bool isIn(const Region& region, const Place& place, double fromWest)
{
    constexpr double kSlack = 1e-9;
    return place.latitude >= region.south - kSlack && place.latitude <= region.north + kSlack &&
           fromWest <= region.longitudeSpan() + kSlack;
}

[[noreturn]] void refuse(const Place& place)
{
    std::array<char, 96> text{};
    std::snprintf(text.data(), text.size(),
                  "%g degrees north, %g degrees east is not in the region", place.latitude,
                  place.longitude);
    throw MapError(text.data());
}

} // namespace

float valueAt(const Field& field, const Place& place)
{
    if (field.values.isEmpty()) throw MapError("there is no field");
    const double fromWest = degreesFromWest(field.region, place.longitude);
    if (!isIn(field.region, place, fromWest)) refuse(place);

    const double columns = fromWest / field.degreesPerColumn();
    const Between x = field.region.wraps() ? betweenMiddlesOnCircle(columns, field.width())
                                           : betweenMiddles(columns, field.width());
    const Between y = betweenMiddles((field.region.north - place.latitude) / field.degreesPerRow(),
                                     field.height());
    const auto alongRow = [&](int row) {
        const double from = field.values.at(x.first, row);
        return from + x.part * (field.values.at(x.second, row) - from);
    };
    const double above = alongRow(y.first);
    return static_cast<float>(above + y.part * (alongRow(y.second) - above));
}

Profile sampleProfile(const Field& field, const Place& from, const Place& to, int samples)
{
    if (samples < 2 || samples > kMostProfileSamples)
        throw MapError("the number of samples of a profile is not between 2 and 100000");
    const GreatCircle way(from, to);
    std::vector<float> values;
    values.reserve(static_cast<std::size_t>(samples));
    for (int i = 0; i < samples; ++i) values.push_back(valueAt(field, way.at(i / (samples - 1.0))));
    return {from, to, way.length(), Raster<float>(samples, 1, std::move(values))};
}

} // namespace Maps
