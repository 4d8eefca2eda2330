#include "HostFixture.h"

#include <zelm/network/NetworkReader.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace Zelm
{
namespace
{

using NewPluginCommand = HostFixture;

TEST_F(NewPluginCommand, StartsAProject)
{
    zelm("new-plugin summit");

    EXPECT_EQ(status, 0) << err;
    EXPECT_EQ(out,
              "summit/CMakeLists.txt\nsummit/Summit.cpp\nsummit/summit.json\nsummit/README.md\n");
    EXPECT_NE(bytesOf(folder / "summit/Summit.cpp").find("ZELM_MODULE(summit)"), std::string::npos);
    EXPECT_NE(bytesOf(folder / "summit/CMakeLists.txt").find("zelm_add_module(summit Summit.cpp)"),
              std::string::npos);
    EXPECT_EQ(readNetworkFile(folder / "summit/summit.json").objects.size(), 1U);
    for (const auto& entry : std::filesystem::directory_iterator(folder / "summit"))
        EXPECT_EQ(bytesOf(entry.path()).find("@stem@"), std::string::npos) << entry.path();
}

TEST_F(NewPluginCommand, TellsItsFilesAsJson)
{
    zelm("new-plugin summit --json");

    EXPECT_EQ(status, 0) << err;
    EXPECT_EQ(json()["module"], "summit");
    EXPECT_EQ(json()["files"].dump(), R"(["summit/CMakeLists.txt","summit/Summit.cpp",)"
                                      R"("summit/summit.json","summit/README.md"])");
}

TEST_F(NewPluginCommand, RefusesNamesThatTheProjectCannotHave)
{
    for (const char* name : {"class", "alignas", "xor_eq", "test", "quorl", "tolmen"})
    {
        zelm(std::string("new-plugin ") + name);
        expectComplaint(2, std::string("new-plugin ") + name + ": this is a word of C++");
        EXPECT_EQ(folder.count(), 0U) << name;
    }
    zelm("new-plugin classes");
    EXPECT_EQ(status, 0) << err;
}

TEST_F(NewPluginCommand, StartsItWhereItIsTold)
{
    zelm("new-plugin summit deep/down");

    EXPECT_EQ(status, 0) << err;
    EXPECT_TRUE(std::filesystem::exists(folder / "deep/down/Summit.cpp"));
}

TEST_F(NewPluginCommand, LeavesAloneWhatIsThere)
{
    std::filesystem::create_directory(folder / "summit");
    writeBytes(folder / "summit/mine", "x");
    zelm("new-plugin summit");

    expectComplaint(2, "new-plugin summit: this is there already");
    zelm("new-plugin a /proc/a");
    expectComplaint(1, "/proc/a");
}

TEST_F(NewPluginCommand, LeavesNoHalfOfAProject)
{
    // Blocks of 512 bytes: only the first file fits.
    runCommand("cd " + folder.path().string() +
               " && trap '' XFSZ && ulimit -f 1 && " ZELM_PROGRAM " new-plugin summit");

    expectComplaint(1, "summit/Summit.cpp: this cannot be written: File too large");
    EXPECT_TRUE(std::filesystem::is_empty(folder / "summit"));
    zelm("new-plugin summit");
    EXPECT_EQ(status, 0) << err << "it can be begun again";
}

} // namespace
} // namespace Zelm
