#include "HostFixture.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace Zelm
{
namespace
{

constexpr const char* kOne = R"("objects": [{"name": "a", "creator": "Test/Sum"}])";

class CacheCommand : public HostFixture
{
protected:
    std::string stateOf(const std::string& step)
    {
        zelm("cache " + step + " --json");
        return json().value("state", "") + (status == 0 ? "" : " " + std::to_string(status));
    }

    const std::filesystem::path cache = caches / "cache";
};

TEST_F(CacheCommand, IsWrittenCheckedAndDropped)
{
    EXPECT_EQ(stateOf("check"), "absent 1");
    EXPECT_EQ(stateOf("write"), "written");
    EXPECT_EQ(stateOf("check"), "good");
    EXPECT_EQ(stateOf("write"), "written");
    EXPECT_EQ(stateOf("check"), "good");
    EXPECT_EQ(caches.count(), 2U) << "and nothing unfinished";
    EXPECT_EQ(stateOf("drop"), "dropped");
    EXPECT_EQ(stateOf("drop"), "absent");
    EXPECT_EQ(caches.count(), 0U);
}

TEST_F(CacheCommand, SparesTheLoadingOfModules)
{
    stateOf("write");
    zelm("inspect --json");
    const Json told = json();
    for (const Json& module : told["modules"]) EXPECT_EQ(module["state"], "cached") << module;

    runNetwork(kOne, "--json");
    EXPECT_EQ(status, 0) << err;
}

TEST_F(CacheCommand, IsDroppedWhereItIsTorn)
{
    for (const char* kind : {"cut", "changed"})
    {
        stateOf("write");
        std::string bytes = bytesOf(cache);
        if (kind == std::string("cut")) writeBytes(cache, bytes.substr(0, bytes.size() / 2));
        bytes[bytes.size() / 2] ^= 1;
        if (kind == std::string("changed")) writeBytes(cache, bytes);

        EXPECT_EQ(stateOf("check"), "torn 1") << kind;
        runNetwork(kOne, "--json");
        EXPECT_EQ(status, 0) << err;
        EXPECT_NE(err.find("is dropped: it is not as it was written"), std::string::npos) << err;
        EXPECT_EQ(caches.count(), 0U) << kind;
    }
}

TEST_F(CacheCommand, IsDroppedWhereAModuleHasChanged)
{
    const QuorlTest::TemporaryFolder modules;
    std::filesystem::copy_file(ZELM_TEST_MODULES "/hosttest.zelm", modules / "copy.zelm");
    const std::string option = "--modules " + modules.path().string();
    stateOf("write " + option);
    EXPECT_EQ(stateOf("check " + option), "good");
    EXPECT_EQ(stateOf("check"), "other 1");

    std::filesystem::last_write_time(modules / "copy.zelm",
                                     std::filesystem::file_time_type::clock::now());
    EXPECT_EQ(stateOf("check " + option), "stale 1");
    zelm("inspect " + option);
    EXPECT_NE(err.find("is dropped: a module that it tells of has changed"), std::string::npos)
        << err;
    EXPECT_EQ(caches.count(), 0U);
}

/// Whatever was named by mistake, as the network itself.
TEST_F(CacheCommand, LeavesAloneWhatIsNoCache)
{
    const std::string words = ": this is no cache of creators, and is left alone\n";
    writeBytes(folder / "notes", "mine");
    writeBytes(folder / "own", "mine");
    writeBytes(folder / "own.sum", "[1]");
    writeBytes(folder / "none.sum", "mine");
    std::filesystem::create_directory(folder / "folder");
    for (const std::string name : {"a.json", "notes", "own", "none", "folder", "/dev/zero"})
    {
        runNetwork(kOne, "--json --cache " + name);
        EXPECT_EQ(status, 0) << name;
        EXPECT_EQ(err, "zelm: " + name + words);
        EXPECT_EQ(stateOf("check --cache " + name), "foreign 1");
        for (const char* step : {"write", "drop"})
        {
            zelm("cache " + (step + (" --cache " + name)));
            EXPECT_EQ(status, 1) << name;
            EXPECT_EQ(err, "zelm: " + name + words);
        }
    }
    EXPECT_NE(bytesOf(folder / "a.json"), "");
    EXPECT_EQ(bytesOf(folder / "notes") + bytesOf(folder / "own"), "minemine");
    EXPECT_EQ(bytesOf(folder / "own.sum") + bytesOf(folder / "none.sum"), "[1]mine");
    EXPECT_EQ(folder.count(), 6U);
}

TEST_F(CacheCommand, TellsWhyItCannotBeWritten)
{
    zelm("cache write --cache /proc/nothing/cache");

    EXPECT_EQ(status, 1);
    EXPECT_NE(err.find("zelm: /proc/nothing/cache: this cannot be written: No such"),
              std::string::npos)
        << err;
}

} // namespace
} // namespace Zelm
