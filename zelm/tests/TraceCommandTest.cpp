#include "HostFixture.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace Zelm
{
namespace
{

class TraceCommand : public HostFixture
{
protected:
    Json traced(const std::string& members, const std::string& options = "")
    {
        writeBytes(folder / "a.json", R"({"zelm-network": 1, )" + members + "}");
        zelm("trace a.json -o t.json " + options);
        return Json::parse(bytesOf(folder / "t.json"), nullptr, false);
    }
};

constexpr const char* kSums = R"("objects": [
    {"name": "first", "creator": "Test/Sum"},
    {"name": "second", "creator": "Test/Sum", "inputs": {"left": "first.sum"}},
    {"name": "third", "creator": "Test/Sum", "inputs": {"left": "second.sum", "right": "first.sum"}}],
    "contexts": [{"name": "one"}, {"name": "two"}])";

TEST_F(TraceCommand, WritesEachRequestOfAnObject)
{
    const Json trace = traced(kSums);

    ASSERT_EQ(status, 0) << err;
    std::string visits;
    for (const Json& event : trace["traceEvents"])
    {
        EXPECT_EQ(event["ph"], "X");
        EXPECT_EQ(event["cat"], "request");
        EXPECT_TRUE(event["ts"].is_number() && event["dur"].is_number()) << event;
        const Json& arguments = event["args"];
        visits += arguments["context"].get<std::string>() + " " + event["name"].get<std::string>() +
                  " " + arguments["level"].dump() + " " + arguments["decision"].get<std::string>() +
                  "\n";
    }
    const std::string ofOne = "one third 0 ran: row 1, the input is newer (left)\n"
                              "one second 1 ran: row 1, the input is newer (left)\n"
                              "one first 2 ran: row 1, the input is newer (left)\n"
                              "one first 1 idle\n";
    EXPECT_EQ(visits.substr(0, ofOne.size()), ofOne);
    EXPECT_EQ(trace["traceEvents"].size(), 8U);
    EXPECT_EQ(trace["traceEvents"][0]["args"]["request"],
              trace["traceEvents"][3]["args"]["request"]);
    EXPECT_NE(trace["traceEvents"][0]["args"]["request"],
              trace["traceEvents"][4]["args"]["request"]);
}

TEST_F(TraceCommand, StandsAloneOnStandardOutput)
{
    writeBytes(folder / "a.json", std::string(R"({"zelm-network": 1, )") + kSums + "}");

    zelm("trace a.json -o /dev/stdout");

    EXPECT_EQ(status, 0) << err;
    EXPECT_EQ(json()["traceEvents"].size(), 8U) << out;
}

/// Each event of a level lies within the last one of the level above.
TEST_F(TraceCommand, NestsEvents)
{
    const Json trace = traced(kSums);

    constexpr double kRounding = 1e-3; // in microseconds
    std::vector<Json> open;
    for (const Json& event : trace["traceEvents"])
    {
        const auto level = event["args"]["level"].get<std::size_t>();
        ASSERT_LE(level, open.size());
        open.resize(level);
        const double begin = event["ts"];
        const double end = begin + event["dur"].get<double>();
        if (level > 0)
        {
            const double outerBegin = open.back()["ts"];
            EXPECT_GE(begin, outerBegin);
            EXPECT_LE(end, outerBegin + open.back()["dur"].get<double>() + kRounding);
        }
        open.push_back(event);
    }
}

TEST_F(TraceCommand, TellsOfUpdatesThatFail)
{
    const Json trace = traced(
        R"("objects": [{"name": "a", "creator": "Test/Failing", "values": {"way": "throw"}}])");

    EXPECT_EQ(status, 1);
    EXPECT_NE(err.find("zelm: default: a: there is nothing to be done\n"), std::string::npos);
    EXPECT_EQ(trace["traceEvents"].size(), 1U) << "what there is, is written";
}

TEST_F(TraceCommand, TracesAChoiceOfTheNetwork)
{
    const Json trace = traced(kSums, "--context two --request first --set first.left=2 --json");

    EXPECT_EQ(json()["events"], 1) << out;
    EXPECT_EQ(trace["traceEvents"][0]["args"]["context"], "two");
}

} // namespace
} // namespace Zelm
