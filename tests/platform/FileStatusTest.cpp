#include <quorl/platform/FileStatus.h>

#include <gtest/gtest.h>

#include <unistd.h>

#include <ctime>
#include <filesystem>
#include <fstream>
#include <string>

namespace Tolmen::Platform
{
namespace
{

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
