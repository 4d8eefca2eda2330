#include "HostFixture.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace Zelm
{
namespace
{

constexpr const char* kSums = R"("objects": [
    {"name": "first", "creator": "Test/Sum"},
    {"name": "second", "creator": "Test/Sum", "inputs": {"left": "first.sum"}}],
    "contexts": [{"name": "one"}, {"name": "two", "values": {"first": {"left": 5}}}],
    "request": ["second"])";

/// "object:outcome" of what ran under a request, in that order.
std::string ranOf(const Json& request)
{
    std::string text;
    for (const Json& run : request["ran"])
        text += (text.empty() ? "" : " ") + run["object"].get<std::string>() + ":" +
                run["outcome"].get<std::string>();
    return text;
}

std::string withWay(const std::string& way)
{
    return R"("objects": [{"name": "a", "creator": "Test/Failing"}],
        "contexts": [{"name": "bad", "values": {"a": {"way": ")" +
           way + R"("}}}, {"name": "good"}])";
}

class RunCommand : public HostFixture
{
protected:
    void expectComplaintOf(int code, const std::string& members, const std::string& options,
                           const std::string& words)
    {
        runNetwork(members, options);
        expectComplaint(code, words);
        EXPECT_EQ(out, "") << words;
    }

    /// Follows a.json while the shell takes these steps, of which `lines FILE N` waits for so many
    /// lines: of "told", where each evaluation is one, or of "wrong".
    void watchMeanwhile(const std::string& options, const std::string& steps)
    {
        writeBytes(
            folder / "script",
            "lines() { until [ $(cat $1 | wc -l) -ge $2 ]; do kill -0 $!; sleep 0.02; done; }\n"
            "set -e; touch told wrong\n" ZELM_PROGRAM " run a.json --watch --json " +
                options +
                " >told 2>wrong &\n"
                "trap 'kill $! 2>/dev/null || true' EXIT\n" +
                steps + "kill -INT $!; wait $!; cat told; cat wrong >&2\n");
        runCommand("cd " + folder.path().string() +
                   " && ZELM_CACHE=none ZELM_PLUGIN_PATH=" ZELM_TEST_MODULES " sh script");
    }

    /// What ran under one request of each evaluation.
    std::vector<std::string> ranInTurn(std::size_t request = 0) const
    {
        std::istringstream lines(out);
        std::vector<std::string> ran;
        for (std::string line; std::getline(lines, line);)
            ran.push_back(ranOf(Json::parse(line)["requests"][request]));
        return ran;
    }
};

TEST_F(RunCommand, TellsWhatRanInEachContext)
{
    runNetwork(kSums, "--json");

    EXPECT_EQ(status, 0);
    EXPECT_EQ(err, "");
    const Json requests = json()["requests"];
    ASSERT_EQ(requests.size(), 2U) << out;
    EXPECT_EQ(requests[0]["context"], "one");
    EXPECT_EQ(requests[1]["context"], "two");
    EXPECT_EQ(ranOf(requests[0]), "first:updated second:updated");
    EXPECT_EQ(ranOf(requests[1]), "first:updated second:updated");
}

TEST_F(RunCommand, TellsPeopleTheSame)
{
    runNetwork(kSums);

    EXPECT_EQ(status, 0);
    EXPECT_EQ(out.substr(0, 14), "one: second\n  ") << out;
    EXPECT_NE(out.find("\ntwo: second\n  first "), std::string::npos) << out;
}

TEST_F(RunCommand, RunsOneContextAndOneObjectIfAsked)
{
    runNetwork(kSums, "--json --context two --request first");

    const Json requests = json()["requests"];
    ASSERT_EQ(requests.size(), 1U) << out;
    EXPECT_EQ(requests[0]["context"], "two");
    EXPECT_EQ(ranOf(requests[0]), "first:updated");
}

TEST_F(RunCommand, RunsInAContextOfItsOwnIfTheFileHasNone)
{
    runNetwork(R"("objects": [{"name": "a", "creator": "Test/Sum"}])", "--json");

    EXPECT_EQ(json()["requests"][0]["context"], "default");
    EXPECT_EQ(ranOf(json()["requests"][0]), "a:updated");
}

TEST_F(RunCommand, SetsInputsInTheContextsThatAreRun)
{
    runNetwork(withWay("throw"), "--json --set a.way= --set a.value=0.5");

    EXPECT_EQ(status, 0) << err;
    EXPECT_EQ(ranOf(json()["requests"][0]), "a:updated");
}

TEST_F(RunCommand, TellsWhatAnUpdateThrowsAndGoesOnWithTheNextContext)
{
    runNetwork(withWay("throw"), "--json");

    EXPECT_EQ(status, 1);
    EXPECT_NE(err.find("zelm: bad: a: there is nothing to be done\n"), std::string::npos) << err;
    EXPECT_EQ(json()["requests"][0]["failure"], "a: there is nothing to be done");
    EXPECT_EQ(ranOf(json()["requests"][0]), "a:failed");
    EXPECT_EQ(ranOf(json()["requests"][1]), "a:updated");
}

TEST_F(RunCommand, GoesOnWhereAModuleThrowsWhatHasNoWords)
{
    const std::string words = "something was thrown that does not say what it is";
    runNetwork(withWay("number"), "--json");
    EXPECT_EQ(status, 1);
    EXPECT_NE(err.find("zelm: bad: a: " + words + "\n"), std::string::npos) << err;
    EXPECT_EQ(ranOf(json()["requests"][0]), "a:failed");
    EXPECT_EQ(ranOf(json()["requests"][1]), "a:updated");

    expectComplaintOf(
        1, R"("objects": [{"name": "a", "creator": "Test/Particular", "values": {"number": 42}}])",
        "", "a.json:1:98: object \"a\", key \"values.number\": " + words);
    expectComplaintOf(1, R"("objects": [{"name": "a", "creator": "Test/Particular"}])",
                      "--set a.number=42", "--set a.number=42: " + words);
}

TEST_F(RunCommand, TellsOfUpdatesThatFail)
{
    for (const char* way : {"status", "false"})
    {
        runNetwork(withWay(way), "--json");
        EXPECT_EQ(status, 1) << way;
        EXPECT_NE(err.find("zelm: bad: a has failed\n"), std::string::npos) << err;
        EXPECT_EQ(ranOf(json()["requests"][0]), "a:failed") << way;
        EXPECT_EQ(ranOf(json()["requests"][1]), "a:updated") << way;
    }
}

TEST_F(RunCommand, KeepsWhatModulesPrintOutOfItsOutput)
{
    runNetwork(withWay(""), "--json");

    EXPECT_TRUE(json().is_object()) << out;
    EXPECT_NE(err.find("this is not what the program prints\n"), std::string::npos);
}

TEST_F(RunCommand, SavesObjectsWholeOrNotAtAll)
{
    const char* const members = R"("objects": [{"name": "a", "creator": "Test/Savable"}],
                                   "save": [{"object": "a", "file": "one.txt"}])";
    runNetwork(members, "--json --save a=two.txt");
    EXPECT_EQ(status, 0) << err;
    EXPECT_EQ(json()["saved"].dump(), R"(["one.txt","two.txt"])");
    EXPECT_EQ(bytesOf(folder / "one.txt"), "saved\n");
    EXPECT_EQ(folder.count(), 3U) << "with the network";

    runNetwork(members, "--save a=three.bad");
    expectComplaint(1, "three.bad: a cannot be saved here");
    runNetwork(members, "--save a=four.png");
    expectComplaint(1, "a cannot be saved as four.png; it can be saved as .bad, .none, .txt");
    runNetwork(members, "--save a=missing/five.txt");
    expectComplaint(1, "missing/five.txt: this cannot be written: No such file or directory");
    runNetwork(members, "--save a=six.none");
    expectComplaint(1, "six.none: this cannot be written: No such file or directory");
    EXPECT_EQ(folder.count(), 3U);
}

TEST_F(RunCommand, SavesWithoutHarmToOtherFiles)
{
    writeBytes(folder / ".unfinished-one.txt", "mine");
    std::filesystem::create_symlink("two.txt", folder / "one.txt");
    writeBytes(folder / "two.txt", "former");
    std::filesystem::permissions(folder / "two.txt", std::filesystem::perms(0600));

    runNetwork(R"("objects": [{"name": "a", "creator": "Test/Savable"}])", "--save a=one.txt");

    EXPECT_EQ(status, 0) << err;
    EXPECT_EQ(bytesOf(folder / ".unfinished-one.txt"), "mine");
    EXPECT_TRUE(std::filesystem::is_symlink(folder / "one.txt"));
    EXPECT_EQ(bytesOf(folder / "two.txt"), "saved\n");
    EXPECT_EQ(std::filesystem::status(folder / "two.txt").permissions(),
              std::filesystem::perms(0600));
}

TEST_F(RunCommand, TellsWhatRanWhateverIsSaved)
{
    runNetwork(R"("objects": [{"name": "a", "creator": "Test/Savable"}])",
               "--json --save a=one.txt --save a=two.bad --save a=three.txt");

    expectComplaint(1, "two.bad: a cannot be saved here");
    EXPECT_EQ(ranOf(json()["requests"][0]), "a:updated");
    EXPECT_EQ(json()["saved"].dump(), R"(["one.txt"])");
}

TEST_F(RunCommand, ReadsTheFileOnce)
{
    writeBytes(folder / "b.json", std::string(R"({"zelm-network": 1, )") + kSums + "}");
    runCommand("mkfifo " + (folder / "a.json").string() + " && { timeout 10 cat " +
               (folder / "b.json").string() + " >" + (folder / "a.json").string() + " & } && " +
               commandOf("run a.json"));

    EXPECT_EQ(status, 0) << err;
    EXPECT_EQ(out.substr(0, 11), "one: second") << out;
}

TEST_F(RunCommand, TakesTurnsInWhichWorkArrives)
{
    runNetwork(R"("objects": [{"name": "a", "creator": "Test/Later"}])", "--json --turns 2");

    const Json requests = json()["requests"];
    ASSERT_EQ(requests.size(), 3U) << out;
    EXPECT_EQ(ranOf(requests[0]), "a:updated");
    EXPECT_EQ(ranOf(requests[1]), "a:updated");
    EXPECT_EQ(ranOf(requests[2]), "");
}

TEST_F(RunCommand, ComplainsOfOptionsThatTheNetworkDoesNotKnow)
{
    for (const char* options :
         {"--context three", "--request third", "--set third.left=1", "--set first.none=1",
          "--set first.left=much", "--set first.left", "--set left=1", "--set second.left=1",
          "--save third=a.txt", "--save first"})
        expectComplaintOf(2, kSums, options, "");
}

TEST_F(RunCommand, ComplainsOfFilesThatAreNoNetworks)
{
    expectComplaintOf(1, R"("objects": [{"name": "a"}])", "",
                      "a.json:1:33: object \"a\": the key \"creator\" is missing");
    expectComplaintOf(
        1, R"("objects": [{"name": "a", "creator": "Test/Gone", "module": "gone.zelm"}])", "",
        "the module \"gone.zelm\" had it");
    expectComplaintOf(1, R"("objects": [)", "", "a.json:1:");
    expectComplaintOf(1, R"("objects": [])", "", "there are no objects in it");
    zelm("run missing.json");
    expectComplaint(1, "missing.json: No such file or directory");
    zelm("run a.txt");
    expectComplaint(2, "a.txt: this is no network file");
    std::filesystem::create_directory(folder / "b.json");
    zelm("run b.json");
    expectComplaint(1, "b.json: this is a folder, not a file");
    writeBytes(folder / "10@c.json", R"({"zelm-network": 1})");
    zelm("run 10@c.json");
    expectComplaint(1, "./10@c.json: there are no objects in it");
}

TEST_F(RunCommand, RunsACircleToItsEnd)
{
    runNetwork(R"("objects": [{"name": "a", "creator": "Test/Sum", "inputs": {"left": "b.sum"}},
                               {"name": "b", "creator": "Test/Sum", "inputs": {"left": "a.sum"}}])",
               "--json");

    EXPECT_TRUE(json().is_object()) << out << err;
}

TEST_F(RunCommand, FollowsTheFileAndRunsWhatAChangeTouches)
{
    std::string text = bytesOf(ZELM_EXAMPLES "/geoid.json");
    const auto replace = [&](const std::string& words, const std::string& others) {
        text.replace(text.find(words), words.size(), others);
    };
    replace(R"("height": 720, "width": 1440)", R"("height": 80, "width": 160)");
    replace(R"("request": [
    "picture"
  ])",
            R"("request": [{"object": "picture", "contexts": ["world"]}])");
    writeBytes(folder / "a.json", text);
    replace(R"("exaggeration": 20000.0)", R"("exaggeration": 20000.0, "azimuth": 45)");
    writeBytes(folder / "turned.json", text);
    replace(R"("azimuth": 45)", R"("azimuth": "east")");
    writeBytes(folder / "wrong.json", text);
    replace(R"("azimuth": "east")", R"("altitude": 30)");
    writeBytes(folder / "raised.json", text);
    watchMeanwhile("", "lines told 1\n"
                       "mv turned.json a.json; lines told 2\n"
                       "mv wrong.json a.json; lines wrong 1\n"
                       "mv raised.json a.json; lines told 3\n");

    ASSERT_EQ(status, 0) << err;
    const std::vector<std::string> ran = ranInTurn();
    ASSERT_EQ(ran.size(), 3U) << out;
    EXPECT_EQ(ran[0].substr(0, 14), "reader:updated");
    EXPECT_EQ(ran[1], "hillshade:updated picture:updated");
    EXPECT_EQ(ran[2].substr(0, 14), "reader:updated") << "it is made anew after a mistake";
    EXPECT_NE(err.find("a number is expected here, not \"east\""), std::string::npos) << err;
}

/// What is edited while the first evaluation is under way is not missed, and an order that does not
/// fit the file any more waits for one that it fits.
TEST_F(RunCommand, FollowsTheFileFromTheBeginningWhateverBecomesOfIt)
{
    const auto write = [&](const char* file, const std::string& context, const char* left) {
        writeBytes(folder / file,
                   R"({"zelm-network": 1, "objects": [
            {"name": "slow", "creator": "Test/Slow"}, {"name": "sum", "creator": "Test/Sum",
             "values": {"left": )" +
                       std::string(left) +
                       R"(}}], "request": ["slow", "sum"], "contexts": [{"name": ")" + context +
                       R"("}]})");
    };
    write("a.json", "one", "1");
    write("early.json", "one", "2");
    write("other.json", "two", "2");
    write("back.json", "one", "3");
    watchMeanwhile("--context one --set sum.right=5",
                   "until [ -e begun ]; do kill -0 $!; sleep 0.01; done\n"
                   "mv early.json a.json; lines told 2\n"
                   "mv other.json a.json; lines wrong 1\n"
                   "mv back.json a.json; lines told 3\n");

    ASSERT_EQ(status, 0) << err;
    EXPECT_EQ(err, "zelm: --context one: the network has no such context\n");
    EXPECT_EQ(ranInTurn(1), std::vector<std::string>(3, "sum:updated")) << out;
}

TEST_F(RunCommand, FollowsTheFileWhateverTheObserversOfAModuleThrow)
{
    const auto write = [&](const char* file, const char* number) {
        writeBytes(folder / file, R"({"zelm-network": 1, "objects": [
            {"name": "a", "creator": "Test/Particular", "values": {"number": )" +
                                      std::string(number) + "}}]}");
    };
    write("a.json", "1");
    write("unlucky.json", "13");
    write("mute.json", "42");
    write("good.json", "2");
    watchMeanwhile("", "lines told 1\n"
                       "mv unlucky.json a.json; lines wrong 1\n"
                       "mv mute.json a.json; lines wrong 2\n"
                       "mv good.json a.json; lines told 2\n");

    ASSERT_EQ(status, 0) << err;
    EXPECT_EQ(err, "zelm: a.json:2:78: object \"a\", key \"values.number\": 13 is not for me\n"
                   "zelm: a.json:2:78: object \"a\", key \"values.number\": something was thrown "
                   "that does not say what it is\n");
    EXPECT_EQ(ranInTurn(), (std::vector<std::string>{"a:updated", "a:updated"}));
}

TEST_F(RunCommand, KeepsWhatIsSetWhateverTheFileSays)
{
    const auto write = [&](const char* file, const std::string& members) {
        writeBytes(folder / file, R"({"zelm-network": 1, "objects": [
            {"name": "a", "creator": "Test/Failing", "values": )" +
                                      members + "}]}");
    };
    write("a.json", R"({"way": "false", "value": 1})");
    write("other.json", R"({"way": "false", "value": 2})");
    write("same.json", R"({"way": "false", "value": 2.0})");
    write("way.json", R"({"way": "throw", "value": 2})");
    watchMeanwhile("--set a.way=", "lines told 1\n"
                                   "mv other.json a.json; lines told 2\n"
                                   "mv same.json a.json; lines told 3\n"
                                   "mv way.json a.json; lines told 4\n");

    ASSERT_EQ(status, 0) << err;
    EXPECT_EQ(ranInTurn(), (std::vector<std::string>{"a:updated", "a:updated", "", "a:updated"}))
        << "nothing is younger that is as it was set";
}

TEST_F(RunCommand, DrawsTheGeoid)
{
    zelm("run " ZELM_EXAMPLES "/geoid.json --json --set region.width=160 --set region.height=120");

    ASSERT_EQ(status, 0) << err;
    const std::set<std::string> names{"world.png", "india.png"};
    for (const std::string& name : names)
        EXPECT_EQ(bytesOf(folder / name).substr(1, 3), "PNG") << name;
    EXPECT_EQ(ranOf(json()["requests"][0]).substr(0, 29), "reader:updated region:updated") << out;
    EXPECT_EQ(json()["requests"][0]["ran"].size(), 7U);
    EXPECT_EQ(json()["requests"][1]["ran"].size(), 7U);
}

} // namespace
} // namespace Zelm
