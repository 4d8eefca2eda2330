#pragma once

#include "Image.h"

namespace Maps
{

/// How two pictures stand together.
struct Arrangement
{
    bool isBelow = false; ///< the second stands below the first, else to the right of it
    int gap = 0;          ///< pixels between them, in [0, kGreatestGap]
    LinearRgb background; ///< where neither of them is

    friend bool operator==(const Arrangement&, const Arrangement&) = default;
};

inline constexpr int kGreatestGap = 4096;

/// The longest side of what is composed, in pixels.
inline constexpr int kLongestComposed = 32768;

/// Two pictures in one, each pixel for pixel, their middles in one line. An empty picture leaves
/// the other one as it is.
/// \throws MapError for a gap beyond its range, and for what becomes too large.
LinearImage compose(const LinearImage& first, const LinearImage& second,
                    const Arrangement& arrangement);

} // namespace Maps
