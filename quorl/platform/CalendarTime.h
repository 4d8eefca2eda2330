#pragma once

#include <quorl/foundation/Export.h>

#include <cstdint>

namespace Tolmen::Platform
{

/// A moment by the wall clock and the calendar.
struct CalendarTime
{
    int year = 0;
    int month = 0; ///< 1 to 12
    int day = 0;   ///< 1 to 31
    int hour = 0;
    int minute = 0;
    int second = 0;
    int millisecond = 0;
};

/// The present moment in local time.
TOLMEN_API CalendarTime localCalendarTime();

/// The same calendar time as a count of 100 nanoseconds since 1 January 1601, without any change of
/// time zone. Proleptic Gregorian calendar; the milliseconds are the finest that a moment holds.
TOLMEN_API std::uint64_t ticksSince1601(const CalendarTime& time);

} // namespace Tolmen::Platform
