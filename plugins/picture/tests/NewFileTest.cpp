#include "NewFile.h"

#include <tests/support/FileBytes.h>
#include <tests/support/TemporaryFolder.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace Maps
{
namespace
{

namespace fs = std::filesystem;
using QuorlTest::bytesOf;
using QuorlTest::writeBytes;

void replace(const fs::path& target, const std::string& bytes)
{
    NewFile file(target);
    file.write(bytes);
    file.takeThePlaceOfTheTarget();
}

TEST(NewFile, NeedsNoNameThatIsTaken)
{
    const QuorlTest::TemporaryFolder folder;
    for (int number = 0; number < 100; ++number)
        writeBytes(folder / ("a." + std::to_string(number) + ".part"), "left over");

    replace(folder / "a", "new");

    EXPECT_EQ(bytesOf(folder / "a"), "new");
    EXPECT_EQ(folder.count(), 101U);
}

TEST(NewFile, LeavesNothingIfItIsNotFinished)
{
    const QuorlTest::TemporaryFolder folder;
    writeBytes(folder / "a", "former");

    NewFile(folder / "a").write("new");

    EXPECT_EQ(bytesOf(folder / "a"), "former");
    EXPECT_EQ(folder.count(), 1U);
}

TEST(NewFile, FollowsLinksAndKeepsTheMode)
{
    const QuorlTest::TemporaryFolder folder;
    fs::create_directory(folder / "far");
    writeBytes(folder / "far" / "a", "former");
    fs::permissions(folder / "far" / "a", fs::perms(0640));
    fs::create_symlink("far/a", folder / "link");
    fs::create_symlink("far/b", folder / "to nothing");

    replace(folder / "link", "new");
    replace(folder / "to nothing", "newer");

    EXPECT_TRUE(fs::is_symlink(folder / "link"));
    EXPECT_EQ(bytesOf(folder / "far" / "a"), "new");
    EXPECT_EQ(fs::status(folder / "far" / "a").permissions(), fs::perms(0640));
    EXPECT_TRUE(fs::is_symlink(folder / "to nothing"));
    EXPECT_EQ(bytesOf(folder / "far" / "b"), "newer");
}

TEST(NewFile, IsWrittenToADevice)
{
    replace("/dev/null", "new");

    EXPECT_TRUE(fs::is_character_file("/dev/null"));
}

} // namespace
} // namespace Maps
