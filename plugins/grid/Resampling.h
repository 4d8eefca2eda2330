#pragma once

#include "Field.h"
#include "Grid.h"

namespace Maps
{

/// The longest side of a field, in pixels.
inline constexpr int kLongestSide = 16384;

/// Samples `grid` bilinearly at the middles of `width` x `height` pixels laid over `region`.
///
/// Longitudes wrap at 360 degrees where the grid goes round the Earth: between its last column and
/// its first lies one more cell, so the date line leaves no seam. Exact on fields that are linear
/// in longitude and latitude, up to rounding to float.
/// \throws MapError if the region is bad (see checkRegion), a side is not in [2, kLongestSide],
/// the grid is empty, or a pixel's middle lies outside the grid.
Field resample(const Grid& grid, const Region& region, int width, int height);

} // namespace Maps
