#pragma once

#include "Volume.h"

#include <plugins/picture/Image.h>

#include <array>
#include <string_view>

namespace Volumes
{

/// An axis of the world: x to the right of the person, y to the front, z upwards.
enum class Axis
{
    X,
    Y,
    Z
};

inline constexpr std::array<std::string_view, 3> kAxisWords{"x", "y", "z"};

/// The longest side of a slice, in pixels.
inline constexpr int kLongestSide = 8192;

/// Cuts a volume across `axis` at `position` millimetres, in pixels of `step` millimetres, whose
/// values are interpolated (see Volume::between); NaN where the plane leaves the volume.
///
/// The picture is seen as the person's own axes run: across z, right is right and front is up;
/// across y, right is right and top is up; across x, front is right and top is up.
/// \throws MapError if the volume is empty, the position is not within it, or the step is not
/// positive or gives a side that is longer than kLongestSide.
Maps::Raster<float> cut(const Volume& volume, Axis axis, double position, double step);

/// Values in grey, as evenly to the eye as they rise: black at `low` and below, white at `high` and
/// above. What is no number is black.
/// \throws MapError unless both are finite, and low < high.
Maps::LinearImage inGrey(const Maps::Raster<float>& values, double low, double high);

} // namespace Volumes
