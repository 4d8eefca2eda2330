#pragma once

#include <string>
#include <vector>

namespace Maps
{

/// Round numbers along an axis: the multiples of a step.
struct Ticks
{
    double step = 0.0;
    std::vector<double> values; ///< rising
};

/// The multiples within [low, high] of the least of the steps 1, 2 and 5 times a power of ten of
/// which at most `most` fit into the range.
/// \pre low < high, most > 0, all finite.
Ticks decimalTicks(double low, double high, double most);

/// The same for degrees, where the steps beyond 10 are those that divide a circle: 15, 30, 45, 60,
/// 90 and 180.
Ticks degreeTicks(double low, double high, double most);

/// "30°N", "0°", "12.5°S" (UTF-8), with as many decimals as the step needs.
std::string latitudeLabel(double degrees, double step);

/// "120°W", "0°", "180°". Whole turns are taken off first.
std::string longitudeLabel(double degrees, double step);

/// "−100", with the true minus sign.
std::string numberLabel(double value, double step);

} // namespace Maps
