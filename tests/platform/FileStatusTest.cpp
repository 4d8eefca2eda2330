#include <quorl/platform/FileStatus.h>
#include <tests/support/FileBytes.h>
#include <tests/support/TemporaryFolder.h>

#include <gtest/gtest.h>

#include <ctime>
#include <filesystem>
#include <string>

namespace Tolmen::Platform
{
namespace
{

TEST(FileStatus, TellsSizeAndTime)
{
    const QuorlTest::TemporaryFolder folder;
    const std::string path = (folder / "file").string();
    EXPECT_FALSE(fileStatus(path).exists);
    const std::time_t before = std::time(nullptr) - 2;
    QuorlTest::writeBytes(path, "seven b");
    const FileStatus status = fileStatus(path);

    EXPECT_TRUE(status.exists);
    EXPECT_EQ(status.size, 7);
    EXPECT_GE(status.modifiedSeconds, before);
    EXPECT_GE(status.modifiedNanoseconds, 0);
    EXPECT_LT(status.modifiedNanoseconds, 1000000000);
}

TEST(FileStatus, TellsOfFoldersAndNothingOfWhatIsNotThere)
{
    EXPECT_TRUE(fileStatus(std::filesystem::temp_directory_path().string()).exists);
    const FileStatus none = fileStatus("");
    EXPECT_FALSE(none.exists);
    EXPECT_EQ(none.size, 0);
    EXPECT_EQ(none.modifiedSeconds, 0);
}

} // namespace
} // namespace Tolmen::Platform
