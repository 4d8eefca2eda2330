#include <zelm/network/Replacement.h>

#include "Complaint.h"

#include <tests/support/FileBytes.h>
#include <tests/support/TemporaryFolder.h>

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <filesystem>
#include <string>

namespace Zelm
{
namespace
{

namespace fs = std::filesystem;
using QuorlTest::bytesOf;
using QuorlTest::writeBytes;

void replace(const fs::path& file, const std::string& bytes)
{
    Replacement replacement(file.string());
    replacement.write(bytes);
    replacement.takePlace();
}

class ReplacementOfAFile : public testing::Test
{
protected:
    const QuorlTest::TemporaryFolder folder;
};

TEST_F(ReplacementOfAFile, LeavesWhatStandsBesideIt)
{
    for (const char* other : {"a.txt.new", ".unfinished-a.txt", "a.txt.0.part"})
        writeBytes(folder / other, "mine");

    replace(folder / "a.txt", "new");

    EXPECT_EQ(bytesOf(folder / "a.txt"), "new");
    for (const char* other : {"a.txt.new", ".unfinished-a.txt", "a.txt.0.part"})
        EXPECT_EQ(bytesOf(folder / other), "mine") << other;
    EXPECT_EQ(folder.count(), 4U);
}

TEST_F(ReplacementOfAFile, IsGoneWithAllThatWasMadeForItIfItTakesNoPlace)
{
    writeBytes(folder / "a.txt", "former");
    {
        Replacement replacement((folder / "a.txt").string());
        replacement.write("new");
        writeBytes(replacement.path() + ".source", "more");
    }
    EXPECT_EQ(bytesOf(folder / "a.txt"), "former");
    EXPECT_EQ(folder.count(), 1U);
}

TEST_F(ReplacementOfAFile, HasTheSameMode)
{
    writeBytes(folder / "a.txt", "former");
    fs::permissions(folder / "a.txt", fs::perms(0640));

    replace(folder / "a.txt", "new");

    EXPECT_EQ(bytesOf(folder / "a.txt"), "new");
    EXPECT_EQ(fs::status(folder / "a.txt").permissions(), fs::perms(0640));
}

TEST_F(ReplacementOfAFile, HasTheModeOfNewFilesIfThereWasNone)
{
    const mode_t mask = ::umask(0027);
    replace(folder / "a.txt", "new");
    ::umask(mask);

    EXPECT_EQ(fs::status(folder / "a.txt").permissions(), fs::perms(0640));
}

TEST_F(ReplacementOfAFile, StandsWhereLinksLead)
{
    fs::create_directory(folder / "far");
    writeBytes(folder / "far" / "a.txt", "former");
    fs::create_symlink("far/a.txt", folder / "near");
    fs::create_symlink("near", folder / "link");
    fs::create_symlink("far/new.txt", folder / "to nothing");

    replace(folder / "link", "new");
    replace(folder / "to nothing", "newer");

    EXPECT_TRUE(fs::is_symlink(folder / "link"));
    EXPECT_TRUE(fs::is_symlink(folder / "near"));
    EXPECT_TRUE(fs::is_symlink(folder / "to nothing"));
    EXPECT_EQ(bytesOf(folder / "far" / "a.txt"), "new");
    EXPECT_EQ(bytesOf(folder / "far" / "new.txt"), "newer");
}

TEST_F(ReplacementOfAFile, IsWrittenToADeviceOrAPipe)
{
    fs::create_symlink("/dev/null", folder / "null");
    replace(folder / "null", "new");
    EXPECT_TRUE(fs::is_symlink(folder / "null"));
    EXPECT_TRUE(fs::is_character_file("/dev/null"));

    std::array<int, 2> ends{};
    ASSERT_EQ(::pipe(ends.data()), 0);
    replace("/dev/fd/" + std::to_string(ends[1]), "new");
    std::array<char, 8> bytes{};
    EXPECT_EQ(::read(ends[0], bytes.data(), bytes.size()), 3);
    EXPECT_EQ(std::string(bytes.data()), "new");
    for (const int end : ends) ::close(end);
}

TEST_F(ReplacementOfAFile, IsRefusedInTheWordsOfTheSystem)
{
    const auto saidOf = [](const std::string& file) {
        return complaintOf([&] { replace(file, "new"); });
    };
    EXPECT_EQ(saidOf("/dev/full"), "/dev/full: this cannot be written: No space left on device");
    EXPECT_EQ(saidOf(folder.path().string()),
              folder.path().string() + ": this cannot be written: Is a directory");
    EXPECT_EQ(saidOf(folder / "none" / "a.txt"),
              (folder / "none" / "a.txt").string() +
                  ": this cannot be written: No such file or directory");
}

} // namespace
} // namespace Zelm
