#include "HostFixture.h"

#include <gtest/gtest.h>

#include <string>

namespace Zelm
{
namespace
{

constexpr const char* kNetwork = R"({"zelm-network": 1, "objects": [
    {"name": "a", "creator": "Test/Sum"},
    {"name": "b", "creator": "Test/Sum", "inputs": {"left": "a.sum"}},
    {"name": "s", "creator": "Test/Savable"}],
    "contexts": [{"name": "one"}]})";

struct Call
{
    const char* arguments;
    int code;
    const char* line; // behind "zelm: "
};

/// The program says in one line what is wrong, prints nothing else, and leaves no file.
class WrongUsage : public HostFixture
{
protected:
    void expect(const Call& call)
    {
        writeBytes(folder / "a.json", kNetwork);
        zelm(call.arguments);
        EXPECT_EQ(status, call.code) << call.arguments;
        EXPECT_EQ(err, std::string("zelm: ") + call.line + "\n") << call.arguments;
        EXPECT_EQ(out, "") << call.arguments;
        EXPECT_EQ(folder.count(), 1U) << call.arguments;
    }
};

TEST_F(WrongUsage, OfTheProgram)
{
    for (const Call& call : {
             Call{"", 2, "a command is required; see zelm --help"},
             Call{"fly", 2, "fly: there is no such command; see zelm --help"},
             Call{"--json", 2, "a command is required; see zelm --help"},
             Call{"--fly", 2, "--fly: there is no such option; see zelm --help"},
             Call{"--verbose -1 inspect", 2,
                  "--verbose: Value -1 not in range 0 to 100; see zelm --help"},
             Call{"--verbose much inspect", 2,
                  "--verbose: Value much not in range 0 to 100; see zelm --help"},
             Call{"--modules missing inspect", 2, "--modules missing: there is no such folder"},
             Call{"--cache", 2, "--cache: 1 required FILE missing; see zelm --help"},
         })
        expect(call);
}

TEST_F(WrongUsage, OfRun)
{
    for (const Call& call : {
             Call{"run", 2, "FILE is required; see zelm --help"},
             Call{"run a.json b.json", 2,
                  "The following argument was not expected: b.json; see zelm --help"},
             Call{"run a.json --turns many", 2,
                  "--turns: Value many not in range 0 to 1000000; see zelm --help"},
             Call{"run a.json --turns -1", 2,
                  "--turns: Value -1 not in range 0 to 1000000; see zelm --help"},
             Call{"run a.json --turns", 2,
                  "--turns: 1 required N:INT in [0 - 1000000] missing; see zelm --help"},
             Call{"run a.json --what", 2,
                  "The following argument was not expected: --what; see zelm --help"},
             Call{"run a.json --set", 2,
                  "--set: 1 required OBJECT.SLOT=TEXT missing; see zelm --help"},
             Call{"run a.json --set a", 2, "--set a: object.slot=text is expected"},
             Call{"run a.json --set =1", 2, "--set =1: object.slot=text is expected"},
             Call{"run a.json --set left=1", 2, "--set left=1: object.slot=text is expected"},
             Call{"run a.json --set c.left=1", 2, "--set c: the network has no such object"},
             Call{"run a.json --set a.none=1", 2,
                  "--set a.none=1: there is no input \"none\"; it has left, note, right, scale"},
             Call{"run a.json --set a.left=much", 2,
                  "--set a.left=much: a number is expected here, not \"much\""},
             Call{"run a.json --set b.left=1", 2,
                  "--set b.left=1: this input is connected, and has no value of its own"},
             Call{"run a.json --context two", 2, "--context two: the network has no such context"},
             Call{"run a.json --request c", 2, "--request c: the network has no such object"},
             Call{"run a.txt", 2, "a.txt: this is no network file, which ends in .json"},
             Call{"run .", 2, ".: this is no network file, which ends in .json"},
             Call{"run missing.json", 1, "missing.json: No such file or directory"},
         })
        expect(call);
}

TEST_F(WrongUsage, OfGraph)
{
    for (const Call& call : {
             Call{"graph", 2, "FILE is required; see zelm --help"},
             Call{"graph a.json", 2, "--output is required; see zelm --help"},
             Call{"graph -o a.svg", 2, "FILE is required; see zelm --help"},
             Call{"graph a.json -o", 2, "--output: 1 required FILE missing; see zelm --help"},
             Call{"graph a.json -o a.pdf", 2,
                  "--output a.pdf: .svg, .png, .dot or .json is expected"},
             Call{"graph a.json -o a", 2, "--output a: .svg, .png, .dot or .json is expected"},
             Call{"graph a.json -o missing/a.dot", 1,
                  "missing/a.dot: this cannot be written: No such file or directory"},
             Call{"graph missing.json -o a.svg", 1, "missing.json: No such file or directory"},
         })
        expect(call);
}

TEST_F(WrongUsage, OfWhy)
{
    for (const Call& call : {
             Call{"why", 2, "FILE is required; see zelm --help"},
             Call{"why a.json", 2, "OBJECT is required; see zelm --help"},
             Call{"why a.json c", 2, "OBJECT c: the network has no such object"},
             Call{"why a.json a b", 2,
                  "The following argument was not expected: b; see zelm --help"},
             Call{"why a.json a --context two", 2,
                  "--context two: the network has no such context"},
             Call{"why a.json a --set a.left=much", 2,
                  "--set a.left=much: a number is expected here, not \"much\""},
             Call{"why a.json a --request c", 2, "--request c: the network has no such object"},
             Call{"why missing.json a", 1, "missing.json: No such file or directory"},
         })
        expect(call);
}

TEST_F(WrongUsage, OfTrace)
{
    for (const Call& call : {
             Call{"trace", 2, "FILE is required; see zelm --help"},
             Call{"trace a.json", 2, "--output is required; see zelm --help"},
             Call{"trace a.json -o", 2, "--output: 1 required FILE missing; see zelm --help"},
             Call{"trace a.json -o missing/t.json", 1,
                  "missing/t.json: this cannot be written: No such file or directory"},
             Call{"trace missing.json -o t.json", 1, "missing.json: No such file or directory"},
             Call{"trace a.json -o t.json --request c", 2,
                  "--request c: the network has no such object"},
             Call{"trace a.json -o t.json --context two", 2,
                  "--context two: the network has no such context"},
         })
        expect(call);
}

TEST_F(WrongUsage, OfTheOtherCommands)
{
    const std::string name = ": a name of small letters, digits and underscores is expected, which "
                             "begins with a letter";
    for (const char* wrong : {"Big", "bIg", "1st", "a-b", "../a"})
    {
        const std::string line = "new-plugin " + std::string(wrong) + name;
        expect({line.substr(0, line.find(':')).c_str(), 2, line.c_str()});
    }
    for (const Call& call : {
             Call{"new-plugin", 2, "NAME is required; see zelm --help"},
             Call{"new-plugin a b c", 2,
                  "The following argument was not expected: c; see zelm --help"},
             Call{"inspect Grid/Nothing", 2,
                  "inspect Grid/Nothing: there is no such creator, and no such type"},
             Call{"inspect a b", 2, "The following argument was not expected: b; see zelm --help"},
             Call{"cache", 2, "a command is required; see zelm --help"},
             Call{"cache fly", 2, "fly: there is no such command; see zelm --help"},
             Call{"cache write now", 2,
                  "The following argument was not expected: now; see zelm --help"},
             Call{"cache write --cache /proc/nothing/cache", 1,
                  "/proc/nothing/cache: this cannot be written: No such file or directory"},
         })
        expect(call);
}

/// Nothing is evaluated in vain.
TEST_F(WrongUsage, OfWhatCannotBeSaved)
{
    for (const Call& call : {
             Call{"run a.json --save a", 2, "--save a: OBJECT=FILE is expected"},
             Call{"run a.json --save c=c.txt", 2, "--save c: the network has no such object"},
         })
        expect(call);
}

/// These have evaluated the network before they fail, and tell of it.
TEST_F(WrongUsage, OfFilesOfSaving)
{
    writeBytes(folder / "a.json", kNetwork);
    for (const Call& call : {
             Call{"run a.json --save a=a.txt", 1, "a cannot be saved as a.txt; it has no savers"},
             Call{"run a.json --save s=s.png", 1,
                  "s cannot be saved as s.png; it can be saved as .bad, .none, .txt"},
             Call{"run a.json --save s=s", 1,
                  "s cannot be saved as s; it can be saved as .bad, .none, .txt"},
             Call{"run a.json --save s=missing/s.txt", 1,
                  "missing/s.txt: this cannot be written: No such file or directory"},
             Call{"run a.json --save s=s.bad", 1, "s.bad: s cannot be saved here"},
         })
    {
        zelm(call.arguments);
        EXPECT_EQ(status, call.code) << call.arguments;
        EXPECT_EQ(err, std::string("zelm: ") + call.line + "\n") << call.arguments;
        EXPECT_EQ(out.substr(0, 6), "one: s") << call.arguments;
        EXPECT_EQ(folder.count(), 1U) << call.arguments;
    }
}

} // namespace
} // namespace Zelm
