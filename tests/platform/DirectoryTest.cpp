#include <quorl/platform/Directory.h>
#include <tests/support/FileBytes.h>
#include <tests/support/TemporaryFolder.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace Tolmen::Platform
{
namespace
{

using testing::ElementsAre;
using testing::IsEmpty;

struct Directory : testing::Test
{
    void write(const std::string& name, const std::string& bytes = "x") const
    {
        QuorlTest::writeBytes(folder + name, bytes);
    }
    std::string read(const std::string& name) const { return QuorlTest::bytesOf(folder + name); }

    const QuorlTest::TemporaryFolder made;
    const std::string folder = made.path().string() + "/";
};

TEST_F(Directory, GivesNamesInTheOrderOfBytes)
{
    for (const char* name : {"b.zelm", "a.zelm", "B.zelm", "a.b.zelm", ".zelm", "x.ZELM", "zelm"})
        write(name);
    std::filesystem::create_directory(folder + "folder.zelm");

    EXPECT_THAT(namesIn(folder, ".zelm"),
                ElementsAre(".zelm", "B.zelm", "a.b.zelm", "a.zelm", "b.zelm", "folder.zelm"));
}

TEST_F(Directory, GivesNoneOfADirectoryThatCannotBeRead)
{
    EXPECT_THAT(namesIn(folder + "absent/", ""), IsEmpty());
    write("file");
    EXPECT_THAT(namesIn(folder + "file/", ""), IsEmpty());
    EXPECT_THAT(namesIn("", ".zelm"), IsEmpty());
}

TEST_F(Directory, RenamesAFile)
{
    write("a", "bytes");
    EXPECT_TRUE(renameFile(folder + "a", folder + "b"));
    EXPECT_EQ(read("b"), "bytes");
    EXPECT_FALSE(std::filesystem::exists(folder + "a"));
    EXPECT_FALSE(renameFile(folder + "absent", folder + "c"));
}

TEST_F(Directory, NeverReplacesAFile)
{
    write("a", "mine");
    write("b", "precious");
    EXPECT_FALSE(renameFile(folder + "a", folder + "b"));
    EXPECT_EQ(read("a"), "mine");
    EXPECT_EQ(read("b"), "precious");
}

} // namespace
} // namespace Tolmen::Platform
