#include "Colour.h"

#include <algorithm>
#include <cmath>

namespace Maps
{

namespace
{

std::uint8_t encodeChannel(float light)
{
    const float clamped = std::clamp(light, 0.0F, 1.0F);
    const float encoded =
        clamped <= 0.0031308F ? 12.92F * clamped : 1.055F * std::pow(clamped, 1.0F / 2.4F) - 0.055F;
    return static_cast<std::uint8_t>(std::lround(encoded * 255.0F));
}

float decodeChannel(std::uint8_t channel)
{
    const float encoded = static_cast<float>(channel) / 255.0F;
    return encoded <= 0.04045F ? encoded / 12.92F : std::pow((encoded + 0.055F) / 1.055F, 2.4F);
}

} // namespace

Rgb encode(const LinearRgb& colour)
{
    return {encodeChannel(colour.red), encodeChannel(colour.green), encodeChannel(colour.blue)};
}

LinearRgb decode(const Rgb& colour)
{
    return {decodeChannel(colour.red), decodeChannel(colour.green), decodeChannel(colour.blue)};
}

LinearRgb toLinearRgb(const Oklab& colour)
{
    const auto cube = [](double x) { return x * x * x; };
    const double l = cube(colour.lightness + 0.3963377774 * colour.a + 0.2158037573 * colour.b);
    const double m = cube(colour.lightness - 0.1055613458 * colour.a - 0.0638541728 * colour.b);
    const double s = cube(colour.lightness - 0.0894841775 * colour.a - 1.2914855480 * colour.b);
    return {static_cast<float>(4.0767416621 * l - 3.3077115913 * m + 0.2309699292 * s),
            static_cast<float>(-1.2684380046 * l + 2.6097574011 * m - 0.3413193965 * s),
            static_cast<float>(-0.0041960863 * l - 0.7034186147 * m + 1.7076147010 * s)};
}

Oklab toOklab(const LinearRgb& colour)
{
    const double red = colour.red;
    const double green = colour.green;
    const double blue = colour.blue;
    const double l = std::cbrt(0.4122214708 * red + 0.5363325363 * green + 0.0514459929 * blue);
    const double m = std::cbrt(0.2119034982 * red + 0.6806995451 * green + 0.1073969566 * blue);
    const double s = std::cbrt(0.0883024619 * red + 0.2817188376 * green + 0.6299787005 * blue);
    return {0.2104542553 * l + 0.7936177850 * m - 0.0040720468 * s,
            1.9779984951 * l - 2.4285922050 * m + 0.4505937099 * s,
            0.0259040371 * l + 0.7827717662 * m - 0.8086757660 * s};
}

double difference(const Oklab& left, const Oklab& right)
{
    return std::hypot(left.lightness - right.lightness, left.a - right.a, left.b - right.b);
}

} // namespace Maps
