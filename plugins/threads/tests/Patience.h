#pragma once

namespace QuorlTest
{

inline constexpr unsigned long kLong = 100000; ///< milliseconds; the end of a test that hangs

} // namespace QuorlTest
