#include "HostFixture.h"

#include <gtest/gtest.h>

#include <string>

namespace Zelm
{
namespace
{

constexpr const char* kSums = R"({"zelm-network": 1, "objects": [
    {"name": "first", "creator": "Test/Sum"},
    {"name": "beside", "creator": "Test/Sum"},
    {"name": "second", "creator": "Test/Sum", "inputs": {"left": "first.sum", "right": "beside.sum"}}],
    "contexts": [{"name": "one"}, {"name": "two"}],
    "request": ["second", {"object": "first", "contexts": ["two"]}]})";

class WhyCommand : public HostFixture
{
protected:
    WhyCommand() { writeBytes(folder / "a.json", kSums); }

    /// The answer in one context.
    Json answer(const std::string& arguments)
    {
        zelm("why a.json " + arguments + " --json --context one");
        EXPECT_EQ(status, 0) << err;
        return json()["answers"][0];
    }

    static std::string chainOf(const Json& answer)
    {
        std::string text;
        for (const Json& link : answer["chain"])
            text += link["object"].get<std::string>() + ":" + link["row"].dump() + " ";
        return text + answer.value("start", "");
    }
};

TEST_F(WhyCommand, FollowsAChangeThroughTheNetwork)
{
    const Json told = answer("second --set first.left=7");

    EXPECT_EQ(told["runs"], true);
    EXPECT_EQ(told["foreseen"], true);
    EXPECT_EQ(chainOf(told), "second:3 first:1 first.left was changed");
    EXPECT_EQ(told["chain"][1]["input"], "left");
    EXPECT_GT(told["chain"][1]["age"], told["chain"][1]["own age"]);
    EXPECT_EQ(told["chain"][0]["age"], "new");
}

TEST_F(WhyCommand, TellsTheNearestMissOfEachInput)
{
    const Json told = answer("beside --set first.left=7");

    EXPECT_EQ(told["runs"], false);
    EXPECT_EQ(told["outcome"], "idle");
    EXPECT_EQ(chainOf(told), "");
    ASSERT_EQ(told["inputs"].size(), 4U);
    for (const Json& input : told["inputs"]) EXPECT_LE(input["age"], input["own age"]) << input;
}

TEST_F(WhyCommand, ExplainsTheFirstEvaluationIfNothingIsSet)
{
    EXPECT_EQ(chainOf(answer("second")), "second:1 second has never run in this context");
}

TEST_F(WhyCommand, ForeseesTheSame)
{
    for (const char* set : {"", " --set first.left=7", " --set beside.left=7 --set second.note=x"})
        for (const char* object : {"first", "beside", "second"})
            EXPECT_EQ(answer(object + std::string(set)),
                      answer(object + std::string(set) + " --ahead"));
}

TEST_F(WhyCommand, AnswersForTheRequestThatReachesTheObject)
{
    zelm("why a.json beside --request first --request second --json --context two");
    EXPECT_EQ(json()["answers"][0]["request"], "second");

    zelm("why a.json beside --request first --context two");
    EXPECT_EQ(out, "two, where first is requested: beside is not upstream\n");
}

TEST_F(WhyCommand, TellsPeopleInATable)
{
    zelm("why a.json second --context one --set first.left=7");
    EXPECT_EQ(out.substr(0, out.find('\n')), "one: second runs");
    EXPECT_NE(out.find("  object  input  age  own age  row\n  second  left   new"),
              std::string::npos)
        << out;
    EXPECT_NE(out.find("3: first was modified\n  first   left "), std::string::npos) << out;
    EXPECT_NE(out.find("1: the input is newer\n  first.left was changed\n"), std::string::npos);

    zelm("why a.json beside --context one --set first.left=7");
    EXPECT_NE(out.find("beside does not run: nothing is newer\n  input "), std::string::npos)
        << out;
    EXPECT_NE(out.find("too old by\n  left "), std::string::npos) << out;
}

TEST_F(WhyCommand, AnswersInEachContext)
{
    zelm("why a.json second --json");

    ASSERT_EQ(json()["answers"].size(), 2U) << out;
    EXPECT_EQ(json()["answers"][1]["context"], "two");
}

TEST_F(WhyCommand, TellsOfUpdatesThatFailAndEndsSo)
{
    writeBytes(folder / "b.json", R"({"zelm-network": 1, "objects": [
        {"name": "bad", "creator": "Test/Failing", "values": {"way": "throw"}},
        {"name": "last", "creator": "Test/Sum", "inputs": {"left": "bad.done"}}]})");
    zelm("why b.json last --json");

    EXPECT_EQ(status, 1);
    EXPECT_NE(err.find("zelm: default: bad: there is nothing to be done\n"), std::string::npos);
    EXPECT_EQ(json()["answers"][0]["outcome"], "broken");
    EXPECT_EQ(json()["answers"][0]["foreseen"], false);
    zelm("why b.json bad");
    EXPECT_NE(out.find("bad runs, and throws\n"), std::string::npos) << out;
}

TEST_F(WhyCommand, ExplainsTheGeoid)
{
    for (const char* object :
         {"reader", "region", "smoothing", "hillshade", "colours", "contours", "picture"})
    {
        zelm("why " ZELM_EXAMPLES "/geoid.json --json --context india --set region.width=90 --set "
             "region.height=90 --set hillshade.azimuth=90 " +
             std::string(object));
        ASSERT_EQ(status, 0) << err;
        EXPECT_EQ(json()["answers"][0]["foreseen"], true) << out;
    }
}

} // namespace
} // namespace Zelm
