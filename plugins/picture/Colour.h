#pragma once

#include <cstdint>

namespace Maps
{

/// A colour as a file stores it: sRGB (IEC 61966-2-1), 8 bits a channel.
struct Rgb
{
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;

    friend bool operator==(const Rgb&, const Rgb&) = default;
};

/// Light of the sRGB primaries, 0 to 1 where it can be shown: what may be added and scaled.
struct LinearRgb
{
    float red = 0.0F;
    float green = 0.0F;
    float blue = 0.0F;

    friend bool operator==(const LinearRgb&, const LinearRgb&) = default;
};

/// A colour by what the eye makes of it: distances are differences as seen. After B. Ottosson, "A
/// perceptual color space for image processing", 2020, https://bottosson.github.io/posts/oklab/.
struct Oklab
{
    double lightness = 0.0; ///< 0 black, 1 white
    double a = 0.0;         ///< green to red
    double b = 0.0;         ///< blue to yellow
};

Rgb encode(const LinearRgb& colour); ///< clamps to what can be shown, rounds to the nearest
LinearRgb decode(const Rgb& colour);

LinearRgb toLinearRgb(const Oklab& colour); ///< beyond [0, 1] if it cannot be shown
Oklab toOklab(const LinearRgb& colour);

/// The difference as seen: the Euclidean distance.
double difference(const Oklab& left, const Oklab& right);

} // namespace Maps
