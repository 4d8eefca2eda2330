#pragma once

#include <chrono>
#include <ctime>

namespace QuorlTest
{

/// By the clock that calendar times are read from. `std::time` may lag behind it by a tick.
inline std::time_t secondsNow()
{
    return std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
}

} // namespace QuorlTest
