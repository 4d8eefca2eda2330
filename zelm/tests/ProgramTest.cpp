#include "HostFixture.h"

#include <gtest/gtest.h>

#include <string>

namespace Zelm
{
namespace
{

using Program = HostFixture;

TEST_F(Program, ExplainsItselfByExample)
{
    for (const char* arguments :
         {"--help", "run --help", "graph --help", "inspect --help", "why --help", "trace --help",
          "cache --help", "cache write --help", "new-plugin --help"})
    {
        zelm(arguments);
        EXPECT_EQ(status, 0) << arguments;
        EXPECT_EQ(err, "") << arguments;
        EXPECT_NE(out, "") << arguments;
    }
    zelm("run --help");
    EXPECT_NE(out.find("zelm run geoid.json"), std::string::npos) << out;
}

TEST_F(Program, ComplainsIfItsOutputCannotBeWritten)
{
    runCommand("true; " ZELM_PROGRAM " --help >/dev/full 2>" + (folder / "err").string() +
               "; echo $?");

    EXPECT_EQ(out, "1\n");
    EXPECT_NE(bytesOf(folder / "err").find("the output cannot be written"), std::string::npos);
}

TEST_F(Program, KeepsItsOutputCleanIfStandardErrorIsClosed)
{
    writeBytes(folder / "a.json", R"({"zelm-network": 1, "objects": [
        {"name": "a", "creator": "Test/Failing"}]})");

    runCommand("( " + commandOf("run a.json --json --verbose 21") + " 2>&- )");

    EXPECT_EQ(status, 0);
    EXPECT_TRUE(json().is_object()) << out;
}

TEST_F(Program, ComplainsIfItsOutputIsClosed)
{
    runCommand("( " + commandOf("inspect") + " >&- )");

    expectComplaint(1, "the output is closed");
}

TEST_F(Program, TellsTheWalksOnStandardErrorIfAsked)
{
    runNetwork(R"("objects": [{"name": "a", "creator": "Test/Sum"}])", "--verbose 1 --json");

    EXPECT_EQ(status, 0);
    EXPECT_NE(err.find(">>> \tVObject: a::request("), std::string::npos) << err;
    EXPECT_TRUE(json().is_object()) << out;
}

} // namespace
} // namespace Zelm
