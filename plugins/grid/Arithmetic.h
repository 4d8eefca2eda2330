#pragma once

#include "Field.h"

#include <array>
#include <string_view>

namespace Maps
{

enum class Operation
{
    Add,
    Subtract,
    Multiply
};

inline constexpr std::array<std::string_view, 3> kOperationWords{"add", "subtract", "multiply"};

/// What comes of two fields, pixel by pixel. Where one has no value (NaN), there is none.
/// \throws MapError unless regions and sizes are the same.
Field combine(const Field& left, const Field& right, Operation operation);

/// factor x value + offset, for each pixel.
/// \throws MapError unless both numbers are finite.
Field scale(const Field& field, double factor, double offset);

} // namespace Maps
