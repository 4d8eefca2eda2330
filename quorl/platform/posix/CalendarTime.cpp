#include <quorl/platform/CalendarTime.h>

#include <chrono>
#include <ctime>

namespace Tolmen::Platform
{

CalendarTime localCalendarTime()
{
    std::timespec now{};
    std::timespec_get(&now, TIME_UTC);
    std::tm local{};
    ::localtime_r(&now.tv_sec, &local);
    return {local.tm_year + 1900,
            local.tm_mon + 1,
            local.tm_mday,
            local.tm_hour,
            local.tm_min,
            local.tm_sec,
            static_cast<int>(now.tv_nsec / 1'000'000)};
}

std::uint64_t ticksSince1601(const CalendarTime& time)
{
    using namespace std::chrono;
    const auto dateOf = [](int y, int m, int d) {
        return sys_days(year(y) / month(static_cast<unsigned>(m)) / day(static_cast<unsigned>(d)));
    };
    const auto sinceMidnight = hours{time.hour} + minutes{time.minute} + seconds{time.second} +
                               milliseconds{time.millisecond};
    const milliseconds elapsed =
        dateOf(time.year, time.month, time.day) - dateOf(1601, 1, 1) + sinceMidnight;
    return static_cast<std::uint64_t>(elapsed.count()) * 10'000;
}

} // namespace Tolmen::Platform
