#pragma once

#include "Field.h"

#include <functional>
#include <optional>

namespace Maps
{

/// How far each pixel is from the line where the heights cross a level: kilometres of great circle
/// on a sphere of 6371 km, to the middle of the nearest pair of neighbours on different sides.
/// Positive where the height is at or above the level, negative below.
///
/// Each pixel is compared with each crossing, without a shortcut: a field of a million pixels takes
/// seconds. Where the region goes round the Earth, neighbours and distances do.
/// \param isToStop asked before each row.
/// \return nothing if it was told to stop; a field of zeros if the level is not crossed.
/// \throws MapError for an empty field, and for a level that is no finite number.
std::optional<Field> distanceToLevel(const Field& heights, double level,
                                     const std::function<bool()>& isToStop);

/// The same from means of `step` x `step` pixels, interpolated bilinearly: faster by the fourth
/// power of the step, about, and off by about that many pixels.
/// \pre `step` is positive.
Field coarseDistanceToLevel(const Field& heights, double level, int step);

} // namespace Maps
