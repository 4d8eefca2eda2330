#include "HostFixture.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace Zelm
{
namespace
{

struct Writing
{
    const char* name;
    const char* arguments;
    const char* file; ///< that is to be replaced
    const char* complaint = "No space left on device";
};

/// A disk of 64 KiB of which nothing is free, where the system lets the user mount one.
class FullDisk : public HostFixture, public testing::WithParamInterface<Writing>
{
protected:
    /// Does it twice, the second time when the disk is full.
    /// \return whether it could be done; `status` and `err` tell how it went.
    bool runOnIt(const Writing& writing)
    {
        const std::string program = ZELM_PROGRAM " ";
        const std::string file = writing.file;
        writeBytes(folder / "script",
                   "mount -t tmpfs -o size=64k none disk && cd disk && : > ../mounted || exit\n"
                   "cp ../a.json . && " +
                       program + writing.arguments + " && cp " + file + " ../former || exit\n" +
                       "head -c 65536 /dev/zero 2> ../full > rest; ls -A > ../before\n" + program +
                       writing.arguments + "\nstatus=$?\nls -A > ../after; cp " + file +
                       " ../left; exit $status\n");
        std::filesystem::create_directory(folder / "disk");
        runCommand("cd " + folder.path().string() +
                   " && ZELM_CACHE=none ZELM_PLUGIN_PATH=" ZELM_TEST_MODULES
                   " unshare -rm sh script");
        return std::filesystem::exists(folder / "mounted");
    }
};

TEST_P(FullDisk, LeavesTheFormerFileAndNothingElse)
{
    writeBytes(folder / "a.json", R"({"zelm-network": 1, "objects": [
        {"name": "saved", "creator": "Test/Savable"}],
        "save": [{"object": "saved", "file": "saved.txt"}]})");
    if (!runOnIt(GetParam())) GTEST_SKIP() << err;

    EXPECT_NE(bytesOf(folder / "full"), "") << "it was not full";
    EXPECT_EQ(status, 1);
    EXPECT_NE(err.find("zelm: "), std::string::npos);
    EXPECT_NE(err.find(GetParam().complaint), std::string::npos) << err;
    EXPECT_NE(bytesOf(folder / "former"), "");
    EXPECT_EQ(bytesOf(folder / "left"), bytesOf(folder / "former"));
    EXPECT_EQ(bytesOf(folder / "after"), bytesOf(folder / "before"));
}

INSTANTIATE_TEST_SUITE_P(Of, FullDisk,
                         testing::Values(Writing{"Saves", "run a.json", "saved.txt", "saved"},
                                         Writing{"Drawings", "graph a.json -o a.svg", "a.svg"},
                                         Writing{"Traces", "trace a.json -o trace.json",
                                                 "trace.json"},
                                         Writing{"Caches", "--cache cache cache write", "cache",
                                                 "the cache cannot be written"}),
                         [](const auto& test) { return std::string(test.param.name); });

} // namespace
} // namespace Zelm
