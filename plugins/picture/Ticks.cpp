#include "Ticks.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

namespace Maps
{

namespace
{

/// Lets a bound that is a multiple of the step but for rounding have its tick.
constexpr double kSlack = 1e-6;

Ticks multiples(double step, double low, double high)
{
    Ticks ticks{step, {}};
    const double first = std::ceil(low / step - kSlack);
    const double last = std::floor(high / step + kSlack);
    for (double i = first; i <= last; ++i) ticks.values.push_back(i * step);
    return ticks;
}

double decimalStep(double least)
{
    const double power = std::pow(10.0, std::floor(std::log10(least)));
    for (const double digit : {1.0, 2.0, 5.0})
        if (digit * power >= least * (1.0 - kSlack)) return digit * power;
    return 10.0 * power;
}

std::string withDecimals(double value, double step)
{
    const double places = std::ceil(-std::log10(step) - kSlack);
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%.*f", static_cast<int>(std::clamp(places, 0.0, 12.0)),
                  value);
    return text.data();
}

std::string degreeLabel(double degrees, double step, const char* positive, const char* negative)
{
    if (std::abs(degrees) < kSlack * step) return "0°";
    return withDecimals(std::abs(degrees), step) + "°" + (degrees > 0.0 ? positive : negative);
}

} // namespace

Ticks decimalTicks(double low, double high, double most)
{
    return multiples(decimalStep((high - low) / most), low, high);
}

Ticks degreeTicks(double low, double high, double most)
{
    const double least = (high - low) / most;
    if (least <= 10.0) return decimalTicks(low, high, most);
    for (const double step : {15.0, 30.0, 45.0, 60.0, 90.0})
        if (step >= least) return multiples(step, low, high);
    return multiples(180.0, low, high);
}

std::string latitudeLabel(double degrees, double step)
{
    return degreeLabel(degrees, step, "N", "S");
}

std::string longitudeLabel(double degrees, double step)
{
    const double turned = std::remainder(degrees, 360.0); // in [-180, 180]
    if (180.0 - std::abs(turned) < kSlack * step) return "180°";
    return degreeLabel(turned, step, "E", "W");
}

std::string numberLabel(double value, double step)
{
    if (std::abs(value) < kSlack * step) return "0";
    std::string text = value < 0.0 ? "−" : "";
    text += withDecimals(std::abs(value), step);
    return text;
}

} // namespace Maps
