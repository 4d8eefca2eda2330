#include "ColourMap.h"

#include "Earth.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <utility>
#include <vector>

namespace Maps
{

namespace
{

constexpr std::size_t kFineSteps = 4096; // in which the length of a curve is measured
constexpr std::size_t kSteps = 1024;     // from zero to the end in the finished table

/// One side of the map, as the class comment tells it.
struct Side
{
    double hueAtZero;
    double hueAtEnd;

    Oklab at(double s) const
    {
        const double lightness = 0.955 - 0.545 * s;
        const double chroma = 0.155 * (1.0 - std::pow(1.0 - s, 3.0));
        const double hue = (hueAtZero + (hueAtEnd - hueAtZero) * s) * kRadiansPerDegree;
        return {lightness, chroma * std::cos(hue), chroma * std::sin(hue)};
    }
};

constexpr Side kBelow{208.0, 280.0};
constexpr Side kAbove{94.0, 28.0};

/// The length of a curve from its beginning to each of its fine steps.
std::vector<double> lengths(const Side& side)
{
    std::vector<double> result{0.0};
    Oklab previous = side.at(0.0);
    for (std::size_t i = 1; i <= kFineSteps; ++i)
    {
        const Oklab next = side.at(static_cast<double>(i) / kFineSteps);
        result.push_back(result.back() + difference(previous, next));
        previous = next;
    }
    return result;
}

/// The parameter at which the curve has the given length.
double parameterAt(const std::vector<double>& lengths, double length)
{
    const auto next = std::upper_bound(lengths.begin() + 1, lengths.end() - 1, length);
    const double from = *(next - 1);
    const double fraction = (length - from) / (*next - from);
    return (static_cast<double>(next - lengths.begin()) - 1.0 + fraction) / kFineSteps;
}

/// Both sides in one table, evenly spaced to the eye: zero stands in the middle.
using Table = std::array<LinearRgb, 2 * kSteps + 1>;

Table makeTable()
{
    const std::vector<double> below = lengths(kBelow);
    const std::vector<double> above = lengths(kAbove);
    const double length = std::min(below.back(), above.back());

    Table table;
    for (std::size_t i = 0; i <= kSteps; ++i)
    {
        const double walked = length * static_cast<double>(i) / kSteps;
        table[kSteps - i] = toLinearRgb(kBelow.at(parameterAt(below, walked)));
        table[kSteps + i] = toLinearRgb(kAbove.at(parameterAt(above, walked)));
    }
    return table;
}

const Table& table()
{
    static const Table theTable = makeTable();
    return theTable;
}

float mix(float from, float to, double fraction)
{
    return static_cast<float>(from + fraction * (double{to} - from));
}

} // namespace

ColourMap::ColourMap(double lowMetres, double highMetres) : low_(lowMetres), high_(highMetres)
{
    if (!std::isfinite(low_) || !std::isfinite(high_) || low_ >= high_)
        throw MapError("the range of heights is empty or not finite");
}

LinearRgb ColourMap::at(double metres) const
{
    const Table& colours = table();
    const double extent = std::max(std::abs(low_), std::abs(high_));
    const double position = (1.0 + std::clamp(metres, low_, high_) / extent) * kSteps;
    const auto lower = std::min(static_cast<std::size_t>(position), 2 * kSteps - 1);
    const double fraction = position - static_cast<double>(lower);
    const LinearRgb& from = colours[lower];
    const LinearRgb& to = colours[lower + 1];
    return {mix(from.red, to.red, fraction), mix(from.green, to.green, fraction),
            mix(from.blue, to.blue, fraction)};
}

LinearImage ColourMap::paint(const Field& heights) const
{
    if (heights.values.isEmpty()) return {};
    std::vector<LinearRgb> pixels;
    pixels.reserve(heights.values.samples().size());
    for (const float metres : heights.values.samples()) pixels.push_back(at(metres));
    return {heights.width(), heights.height(), std::move(pixels)};
}

} // namespace Maps
