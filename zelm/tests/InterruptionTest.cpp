#include "HostFixture.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace Zelm
{
namespace
{

/// Ctrl-C while an update works that would not end.
class InterruptedProgram : public HostFixture
{
protected:
    void interrupt(const std::string& arguments)
    {
        writeBytes(folder / "a.json", R"({"zelm-network": 1, "objects": [
            {"name": "endless", "creator": "Test/Endless"},
            {"name": "saved", "creator": "Test/Savable"}],
            "contexts": [{"name": "one"}, {"name": "two"}],
            "request": ["endless", "saved"],
            "save": [{"object": "saved", "file": "saved.txt"}]})");
        writeBytes(folder / "saved.txt", "before\n");
        writeBytes(folder / "script",
                   ZELM_PROGRAM " " + arguments +
                       " &\n"
                       "until [ -e begun ]; do kill -0 $! || exit 99; sleep 0.02; done\n"
                       "kill -INT $!; wait $!\n");
        runCommand("cd " + folder.path().string() +
                   " && ZELM_CACHE=none ZELM_PLUGIN_PATH=" ZELM_TEST_MODULES " sh script");
    }
};

TEST_F(InterruptedProgram, EndsTheRequestAndSavesNothing)
{
    interrupt("run a.json");

    EXPECT_EQ(status, 1);
    EXPECT_EQ(err, "zelm: one: interrupted\n");
    EXPECT_EQ(bytesOf(folder / "saved.txt"), "before\n");
    EXPECT_EQ(folder.count(), 4U) << "nothing unfinished";
}

TEST_F(InterruptedProgram, TellsSoAsJson)
{
    interrupt("run a.json --json");

    EXPECT_EQ(status, 1);
    ASSERT_EQ(json()["requests"].size(), 1U) << out;
    EXPECT_EQ(json()["requests"][0]["cancelled"], true);
    EXPECT_EQ(json()["saved"].size(), 0U);
}

/// As the signal that comes while the file is read, for which a pipe waits here.
TEST_F(InterruptedProgram, FailsIfNothingWasRequestedYet)
{
    writeBytes(folder / "b.json", R"({"zelm-network": 1, "objects": [
        {"name": "saved", "creator": "Test/Savable"}],
        "save": [{"object": "saved", "file": "saved.txt"}]})");
    writeBytes(folder / "script", "mkfifo a.json\n" ZELM_PROGRAM " run a.json --json &\n"
                                  "exec 3>a.json; kill -INT $!; cat b.json >&3; exec 3>&-\n"
                                  "wait $!\n");
    runCommand("cd " + folder.path().string() +
               " && ZELM_CACHE=none ZELM_PLUGIN_PATH=" ZELM_TEST_MODULES " sh script");

    expectComplaint(1, "interrupted");
    EXPECT_EQ(json()["requests"].size() + json()["saved"].size(), 0U) << out;
    EXPECT_FALSE(std::filesystem::exists(folder / "saved.txt"));
}

TEST_F(InterruptedProgram, DrawsTracesAndExplainsNothing)
{
    interrupt("graph a.json --run -o a.svg");
    expectComplaint(1, "interrupted; nothing is drawn");
    std::filesystem::remove(folder / "begun");

    interrupt("trace a.json -o t.json");
    expectComplaint(1, "one: interrupted");
    std::filesystem::remove(folder / "begun");

    interrupt("why a.json endless");
    expectComplaint(1, "one: interrupted");
    EXPECT_EQ(out, "");
    EXPECT_EQ(folder.count(), 4U);
}

} // namespace
} // namespace Zelm
