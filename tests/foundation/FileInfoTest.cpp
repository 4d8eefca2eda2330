#include <quorl/foundation/FileInfo.h>
#include <tests/support/FileBytes.h>
#include <tests/support/TemporaryFolder.h>

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>

namespace Tolmen
{
namespace
{

TEST(FileInfo, TellsWhenAFileWasChanged)
{
    const QuorlTest::TemporaryFolder folder;
    const std::filesystem::path path = folder / "file";
    EXPECT_TRUE(FileInfo(path.string()).invalid);
    EXPECT_TRUE(FileInfo().invalid);
    QuorlTest::writeBytes(path, "x");
    const FileInfo first(path.string());
    EXPECT_FALSE(first.invalid);
    std::filesystem::last_write_time(path, std::filesystem::last_write_time(path) +
                                               std::chrono::nanoseconds(1000));
    const FileInfo second(path.string());

    EXPECT_TRUE(second.modified > first.modified);
    EXPECT_FALSE(first.modified > second.modified);
    EXPECT_FALSE(first.modified > first.modified);
}

TEST(Filetime, ComparesNanosecondsWithinASecond)
{
    Filetime early;
    early.seconds = 5;
    early.nanoseconds = 999999999;
    Filetime late;
    late.seconds = 6;

    EXPECT_TRUE(late > early);
    EXPECT_FALSE(early > late);
    late.seconds = 5;
    EXPECT_TRUE(early > late);
}

} // namespace
} // namespace Tolmen
