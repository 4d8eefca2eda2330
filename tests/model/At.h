#pragma once

#include <cstddef>

namespace QuorlTest
{

/// Where a number stands in a vector.
inline std::size_t at(int number)
{
    return static_cast<std::size_t>(number);
}

} // namespace QuorlTest
