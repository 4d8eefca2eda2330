#include <quorl/platform/CalendarTime.h>
#include <tests/support/SecondsNow.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <optional>
#include <string>
#include <utility>

namespace Tolmen::Platform
{
namespace
{

TEST(CalendarTime, CountsTicksSince1601)
{
    EXPECT_EQ(ticksSince1601({1601, 1, 1, 0, 0, 0, 0}), 0U);
    EXPECT_EQ(ticksSince1601({1601, 1, 1, 0, 0, 1, 5}), 10050000U);
    EXPECT_EQ(ticksSince1601({1970, 1, 1, 0, 0, 0, 0}), 116444736000000000U);
    EXPECT_EQ(ticksSince1601({2000, 3, 1, 0, 0, 0, 0}) - ticksSince1601({2000, 2, 28, 0, 0, 0, 0}),
              2ULL * 24 * 3600 * 10000000)
        << "a leap year";
    EXPECT_EQ(ticksSince1601({1900, 3, 1, 0, 0, 0, 0}) - ticksSince1601({1900, 2, 28, 0, 0, 0, 0}),
              1ULL * 24 * 3600 * 10000000)
        << "none";
    EXPECT_EQ(ticksSince1601({2026, 11, 20, 23, 59, 59, 999}),
              (1795219199ULL + 11644473600ULL) * 10000000 + 9990000);
}

TEST(CalendarTime, CountsLeapDaysByTheGregorianRule)
{
    constexpr std::uint64_t kDay = 24ULL * 3600 * 10000000;
    const auto february = [&](int year) {
        return (ticksSince1601({year, 3, 1, 0, 0, 0, 0}) -
                ticksSince1601({year, 2, 1, 0, 0, 0, 0})) /
               kDay;
    };
    EXPECT_EQ(february(1604), 29U);
    EXPECT_EQ(february(1700), 28U);
    EXPECT_EQ(february(2000), 29U);
    EXPECT_EQ(february(2023), 28U);
    EXPECT_EQ(february(2024), 29U);
    EXPECT_EQ(february(2100), 28U);
    EXPECT_EQ((ticksSince1601({2001, 1, 1, 0, 0, 0, 0})) / kDay, 146097U) << "400 years";
}

TEST(CalendarTime, GoesOnFromOneYearToTheNext)
{
    EXPECT_EQ(ticksSince1601({2025, 1, 1, 0, 0, 0, 0}) -
                  ticksSince1601({2024, 12, 31, 23, 59, 59, 999}),
              10000U);
}

TEST(CalendarTime, IsLocal)
{
    const std::time_t before = QuorlTest::secondsNow();
    const CalendarTime now = localCalendarTime();
    const std::time_t after = QuorlTest::secondsNow();
    std::tm calendar{};
    calendar.tm_year = now.year - 1900;
    calendar.tm_mon = now.month - 1;
    calendar.tm_mday = now.day;
    calendar.tm_hour = now.hour;
    calendar.tm_min = now.minute;
    calendar.tm_sec = now.second;
    calendar.tm_isdst = -1;
    const std::time_t shown = std::mktime(&calendar);

    EXPECT_LE(before, shown);
    EXPECT_LE(shown, after);
}

/// Puts another time zone in the place of the machine's.
class TimeZone
{
public:
    explicit TimeZone(const char* zone)
    {
        if (const char* const before = std::getenv("TZ")) before_ = before;
        ::setenv("TZ", zone, 1);
        ::tzset();
    }
    ~TimeZone()
    {
        if (before_)
            ::setenv("TZ", before_->c_str(), 1);
        else
            ::unsetenv("TZ");
        ::tzset();
    }
    TimeZone(const TimeZone&) = delete;
    TimeZone& operator=(const TimeZone&) = delete;

private:
    std::optional<std::string> before_;
};

TEST(CalendarTime, IsThatOfTheTimeZone)
{
    constexpr std::int64_t kSecondsFrom1601To1970 = 11644473600;
    for (const auto& [zone, offset] : {std::pair("EAST-5:45", 20700), std::pair("WEST9", -32400)})
    {
        const TimeZone abroad(zone);
        const std::time_t before = QuorlTest::secondsNow();
        const auto shown =
            static_cast<std::int64_t>(ticksSince1601(localCalendarTime()) / 10000000) -
            kSecondsFrom1601To1970 - offset;
        const std::time_t after = QuorlTest::secondsNow();

        EXPECT_LE(before, shown) << zone;
        EXPECT_LE(shown, after) << zone;
    }
}

} // namespace
} // namespace Tolmen::Platform
