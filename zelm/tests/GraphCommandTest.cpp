#include "HostFixture.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace Zelm
{
namespace
{

constexpr const char* kNetwork = R"({"zelm-network": 1, "objects": [
    {"name": "one & only", "creator": "Test/Sum"},
    {"name": "bad", "creator": "Test/Failing", "inputs": {"value": "one & only.sum"}},
    {"name": "last", "creator": "Test/Sum", "inputs": {"left": "bad.done", "right": {"object": "one & only", "input": "right"}}}],
    "contexts": [{"name": "good"}, {"name": "wrong", "values": {"bad": {"way": "false"}}}]})";

class GraphCommand : public HostFixture
{
protected:
    GraphCommand() { writeBytes(folder / "a.json", kNetwork); }

    /// The picture, which is drawn even though one object fails if the network is run.
    std::string drawn(const std::string& picture, const std::string& options = "")
    {
        zelm("graph a.json -o " + picture + " " + options);
        EXPECT_EQ(status, options.find("--run") == std::string::npos ? 0 : 1) << err;
        return bytesOf(folder / picture);
    }

    std::string statesOf(const std::string& options)
    {
        const Json drawing = Json::parse(drawn("b.json", options));
        std::string states;
        for (const Json& object : drawing["objects"]) states += object["states"].dump();
        return states;
    }
};

TEST_F(GraphCommand, TellsTheStatesOfAllContexts)
{
    const std::string never = R"({"good":"never run","wrong":"never run"})";
    EXPECT_EQ(statesOf(""), never + never + never);
    EXPECT_EQ(statesOf("--run"), R"({"good":"fresh","wrong":"fresh"})"
                                 R"({"good":"fresh","wrong":"failed"})"
                                 R"({"good":"fresh","wrong":"stale"})");
}

TEST_F(GraphCommand, TellsWhatFails)
{
    drawn("b.json", "--run");
    EXPECT_NE(err.find("zelm: wrong: bad has failed\n"), std::string::npos) << err;
    EXPECT_EQ(err.find("good: "), std::string::npos) << err;
}

TEST_F(GraphCommand, TellsConnectionsAndSharedInputs)
{
    const Json drawing = Json::parse(drawn("b.json"));

    ASSERT_EQ(drawing["connections"].size(), 3U);
    const Json first = drawing["connections"][0];
    EXPECT_EQ(first["from"], "one & only");
    EXPECT_EQ(first["output"], "sum");
    EXPECT_EQ(first["to"], "bad");
    EXPECT_EQ(first["input"], "value");
    EXPECT_EQ(drawing["connections"][2]["shared input"], "right");
    EXPECT_EQ(drawing["objects"][0]["inputs"].dump(), R"(["right"])");
}

TEST_F(GraphCommand, WritesTheLanguageOfGraphviz)
{
    const std::string dot = drawn("b.dot", "--run --ages");

    EXPECT_EQ(dot.substr(0, 17), "digraph network {") << dot;
    EXPECT_NE(dot.find("<b>one &amp; only</b>"), std::string::npos);
    EXPECT_NE(dot.find("style=dashed, label="), std::string::npos);
    EXPECT_EQ(drawn("b.dot", "--run --ages"), dot) << "each time the same";
}

TEST_F(GraphCommand, DrawsPicturesAndLeavesNothingElse)
{
    EXPECT_EQ(drawn("b.png", "--ages").substr(1, 3), "PNG");
    EXPECT_NE(drawn("b.svg", "--ages --run").find("<svg"), std::string::npos);
    EXPECT_EQ(folder.count(), 3U);
}

TEST_F(GraphCommand, LeavesOtherFilesAndNothingOfItsOwnWithoutGraphviz)
{
    for (const char* other : {"b.svg.new", "b.svg.dot.new"}) writeBytes(folder / other, "mine");
    writeBytes(folder / "b.svg", "former");

    runCommand(commandOf("graph a.json -o b.svg", "PATH=/none"));

    expectComplaint(1, "dot cannot be started");
    EXPECT_EQ(bytesOf(folder / "b.svg"), "former");
    EXPECT_EQ(bytesOf(folder / "b.svg.new") + bytesOf(folder / "b.svg.dot.new"), "minemine");
    drawn("b.svg");
    EXPECT_EQ(bytesOf(folder / "b.svg.new") + bytesOf(folder / "b.svg.dot.new"), "minemine");
    EXPECT_EQ(folder.count(), 4U);
}

TEST_F(GraphCommand, DrawsThroughALinkToADevice)
{
    std::filesystem::create_symlink("/dev/null", folder / "b.svg");

    zelm("graph a.json -o b.svg");

    EXPECT_EQ(status, 0) << err;
    EXPECT_TRUE(std::filesystem::is_symlink(folder / "b.svg"));
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/null"));
}

TEST_F(GraphCommand, DrawsPixelsFinelyEnoughForPrint)
{
    const std::string header = drawn("b.png").substr(16, 4); // the width, highest byte first
    const std::string svg = drawn("b.svg");
    const int points = std::stoi(svg.substr(svg.find("<svg width=\"") + 12));
    const int pixels =
        static_cast<unsigned char>(header[2]) * 256 + static_cast<unsigned char>(header[3]);

    EXPECT_GT(pixels, 2 * points) << "at 72 points an inch";
    EXPECT_NE(svg.find("scale(1 1)"), std::string::npos) << "nothing is cut";
}

TEST_F(GraphCommand, TellsWhatColoursAgesAndDashesMean)
{
    EXPECT_NE(drawn("b.dot").find(">bands: good | wrong<"), std::string::npos);
    EXPECT_NE(drawn("b.dot").find(">dashed: shared inputs<"), std::string::npos);
    EXPECT_NE(drawn("b.dot", "--ages").find(">bands and ages: good | wrong<"), std::string::npos);
}

TEST_F(GraphCommand, TellsWhyAPictureCannotBeDrawn)
{
    for (const char* picture : {"missing/b.svg", "missing/b.dot", "missing/b.json"})
    {
        zelm(std::string("graph a.json -o ") + picture);
        expectComplaint(1, picture);
    }
}

} // namespace
} // namespace Zelm
