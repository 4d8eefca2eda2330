#pragma once

#include <numbers>

namespace Maps
{

inline constexpr double kRadiansPerDegree = std::numbers::pi / 180.0;

/// The mean radius of the Earth (IUGG: a third of two equatorial radii and a polar one).
inline constexpr double kEarthRadiusInMetres = 6371008.8;

} // namespace Maps
