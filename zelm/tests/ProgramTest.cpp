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
    for (const char* arguments : {"--help", "run --help", "graph --help", "inspect --help",
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

TEST_F(Program, ComplainsOfWrongUsageInOneLine)
{
    for (const char* arguments : {"",
                                  "fly",
                                  "--json",
                                  "run",
                                  "run a.json b.json",
                                  "run a.json --turns many",
                                  "run a.json --turns -1",
                                  "run a.json --what",
                                  "run a.json --set",
                                  "run a.txt",
                                  "--verbose -1 inspect",
                                  "--verbose much inspect",
                                  "--modules missing inspect",
                                  "graph a.json",
                                  "graph -o a.svg",
                                  "graph a.json -o a.pdf",
                                  "graph a.json -o",
                                  "inspect Grid/Nothing",
                                  "inspect a b",
                                  "cache",
                                  "cache fly",
                                  "cache write now",
                                  "new-plugin",
                                  "new-plugin Big",
                                  "new-plugin 1st",
                                  "new-plugin a-b",
                                  "new-plugin ../a",
                                  "new-plugin a b c"})
    {
        writeBytes(folder / "a.json",
                   R"({"zelm-network": 1, "objects": [{"name": "a", "creator": "Test/Sum"}]})");
        zelm(arguments);
        expectComplaint(2, "");
        EXPECT_EQ(out, "") << arguments;
    }
}

TEST_F(Program, ComplainsIfItsOutputCannotBeWritten)
{
    runCommand("true; " ZELM_PROGRAM " --help >/dev/full 2>" + (folder / "err").string() +
               "; echo $?");

    EXPECT_EQ(out, "1\n");
    EXPECT_NE(bytesOf(folder / "err").find("the output cannot be written"), std::string::npos);
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
