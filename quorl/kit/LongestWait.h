#pragma once

#include <chrono>

namespace Quorl
{

/// For as long as it takes, as far as anybody can tell: clocks count finer than milliseconds, and
/// cannot add as many as a number holds.
inline constexpr std::chrono::milliseconds kLongestWait = std::chrono::hours(24 * 365);

} // namespace Quorl
