#include <quorl/platform/CalendarTime.h>

#include <quorl/platform/FileStatus.h>

#include <gtest/gtest.h>

#include <unistd.h>

#include <ctime>
#include <filesystem>
#include <fstream>

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

TEST(CalendarTime, IsLocal)
{
    const std::time_t before = std::time(nullptr);
    const CalendarTime now = localCalendarTime();
    const std::time_t after = std::time(nullptr);
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

TEST(FileStatus, TellsSizeAndTime)
{
    const auto path = std::filesystem::temp_directory_path() /
                      ("quorl-file-status-" + std::to_string(::getpid()));
    EXPECT_FALSE(fileStatus(path.string()).exists);
    const std::time_t before = std::time(nullptr) - 2;
    std::ofstream(path) << "seven b";
    const FileStatus status = fileStatus(path.string());
    std::filesystem::remove(path);

    EXPECT_TRUE(status.exists);
    EXPECT_EQ(status.size, 7);
    EXPECT_GE(status.modifiedSeconds, before);
    EXPECT_GE(status.modifiedNanoseconds, 0);
    EXPECT_LT(status.modifiedNanoseconds, 1000000000);
}

} // namespace
} // namespace Tolmen::Platform
