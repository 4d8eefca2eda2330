#include <zelm/network/NetworkReader.h>

#include "Complaint.h"

#include <gtest/gtest.h>

#include <string>

namespace Zelm
{
namespace
{

NetworkDocument read(const std::string& text)
{
    return readNetwork("a.json", text);
}

/// What is said of a file with these further members, which begin at 1:20.
std::string complaint(const std::string& members)
{
    return complaintOf([&] { read(R"({"zelm-network":1, )" + members + "}"); });
}

TEST(NetworkReader, ReadsObjectsInTheirOrder)
{
    const NetworkDocument document = read(R"({
        "zelm-network": 1,
        "objects": [
            {"name": "source", "creator": "Test/Source", "module": "test.zelm",
             "preferences": ["local", "fast"], "values": {"x": 1.5, "on": true, "t": "a"}},
            {"name": "sink", "creator": "Test/Sink", "preferences": {"fast": 0.25},
             "inputs": {"a": "source.x",
                        "b": {"object": "source", "input": "x", "member": "re"},
                        "c": {"object": "source", "output": "y.z"}}}
        ]})");

    ASSERT_EQ(document.objects.size(), 2U);
    const ObjectEntry& source = document.objects[0];
    EXPECT_EQ(source.name, "source");
    EXPECT_EQ(source.creator, "Test/Source");
    EXPECT_EQ(source.module, "test.zelm");
    ASSERT_EQ(source.preferences.size(), 2U);
    EXPECT_EQ(source.preferences[1].first, "fast");
    EXPECT_EQ(source.preferences[1].second, 1.0);
    ASSERT_EQ(source.values.size(), 3U);
    EXPECT_EQ(source.values[0].input, "x");
    EXPECT_EQ(source.values[0].datum, Json(1.5));
    EXPECT_EQ(source.values[2].place.line, 5);

    const ObjectEntry& sink = document.objects[1];
    EXPECT_EQ(sink.preferences[0].second, 0.25);
    ASSERT_EQ(sink.inputs.size(), 3U);
    EXPECT_EQ(sink.inputs[0].object, "source");
    EXPECT_EQ(sink.inputs[0].slot, "x");
    EXPECT_EQ(sink.inputs[0].end, Connection::End::Any);
    EXPECT_EQ(sink.inputs[1].end, Connection::End::Input);
    EXPECT_EQ(sink.inputs[1].member, "re");
    EXPECT_EQ(sink.inputs[2].slot, "y.z");
    EXPECT_EQ(sink.inputs[2].end, Connection::End::Output);
}

TEST(NetworkReader, ReadsContextsRequestsAndSaves)
{
    const NetworkDocument document = read(R"({
        "zelm-network": 1,
        "objects": [{"name": "a", "creator": "A"}],
        "contexts": [{"name": "one", "values": {"a": {"x": "inf"}},
                      "named": {"step": {"type": "double", "value": 0.5}}},
                     {"name": "two"}],
        "request": ["a", {"object": "a", "contexts": ["two"], "precision": 0.5}],
        "save": [{"object": "a", "file": "a.txt"}]})");

    ASSERT_EQ(document.contexts.size(), 2U);
    EXPECT_EQ(document.contexts[0].values.at(0).object, "a");
    EXPECT_EQ(document.contexts[0].values[0].values.at(0).datum, Json("inf"));
    EXPECT_EQ(document.contexts[0].named.at(0).type, "double");
    ASSERT_EQ(document.requests.size(), 2U);
    EXPECT_TRUE(document.requests[0].contexts.empty());
    EXPECT_EQ(document.requests[1].contexts.at(0), "two");
    EXPECT_EQ(document.requests[1].precision, 0.5);
    EXPECT_EQ(document.saves.at(0).file, "a.txt");
}

TEST(NetworkReader, KeepsWhatItDoesNotKnow)
{
    const NetworkDocument document = read(R"({
        "$schema": "x", "zelm-network": 1, "z": [1, {"b": 0, "a": null}],
        "objects": [{"colour": "red", "name": "a", "creator": "A", "at": [1, 2]}],
        "contexts": [{"name": "c", "note": "n"}]})");

    EXPECT_EQ(document.kept.dump(), R"({"$schema":"x","z":[1,{"b":0,"a":null}]})");
    EXPECT_EQ(document.objects[0].kept.dump(), R"({"colour":"red","at":[1,2]})");
    EXPECT_EQ(document.contexts[0].kept.dump(), R"({"note":"n"})");
}

TEST(NetworkReader, TellsFileLineColumnObjectAndKey)
{
    EXPECT_EQ(complaint("\n\"objects\": [{\"name\": \"a\", \"creator\": 5}]"),
              "a.json:2:38: object \"a\", key \"creator\": a text is expected here, not a number");
    EXPECT_EQ(complaint(R"("objects": [{"name": "a", "creator": "A", "values": {"x": [1]}}])"),
              "a.json:1:78: object \"a\", key \"values.x\": a number, a truth value, a text, or an "
              "object of type and text is expected here, not a list");
}

TEST(NetworkReader, RefusesAnotherFormat)
{
    EXPECT_EQ(complaintOf([] { read("{}"); }), "a.json:1:1: the key \"zelm-network\" is missing");
    EXPECT_EQ(complaintOf([] { read("[]"); }),
              "a.json:1:1: an object is expected here, not a list");
    EXPECT_EQ(complaintOf([] { read(R"({"zelm-network": 2})"); }),
              "a.json:1:18: key \"zelm-network\": this file is of version 2; this program reads "
              "version 1");
    EXPECT_NE(complaintOf([] { read(R"({"zelm-network": "1"})"); }), "");
}

TEST(NetworkReader, RefusesFormsThatItDoesNotExpect)
{
    for (
        const char* members : {
            R"("objects": {})",
            R"("objects": [5])",
            R"("objects": [{"creator": "A"}])",
            R"("objects": [{"name": "", "creator": "A"}])",
            R"("objects": [{"name": "a"}])",
            R"("objects": [{"name": "a", "creator": "A", "values": []}])",
            R"("objects": [{"name": "a", "creator": "A", "values": {"x": null}}])",
            R"("objects": [{"name": "a", "creator": "A", "values": {"x": {"type": "T"}}}])",
            R"("objects": [{"name": "a", "creator": "A", "values": {"x": {"type": "T", "text": "", "y": 1}}}])",
            R"("objects": [{"name": "a", "creator": "A", "inputs": {"x": "a"}}])",
            R"("objects": [{"name": "a", "creator": "A", "inputs": {"x": ".a"}}])",
            R"("objects": [{"name": "a", "creator": "A", "inputs": {"x": "a.b.c"}}])",
            R"("objects": [{"name": "a", "creator": "A", "inputs": {"x": {"object": "a"}}}])",
            R"("objects": [{"name": "a", "creator": "A", "inputs": {"x": {"object": "a", "output": "y", "input": "y"}}}])",
            R"("objects": [{"name": "a", "creator": "A", "preferences": "local"}])",
            R"("contexts": [{"values": {}}])",
            R"("contexts": [{"name": "c", "named": {"x": 5}}])",
            R"("request": "a")",
            R"("save": [{"object": "a"}])",
        })
        EXPECT_EQ(complaint(members).substr(0, 9), "a.json:1:") << members;
}

TEST(NetworkReader, RefusesNamesThatStandTwice)
{
    EXPECT_EQ(
        complaint(
            "\"objects\": [{\"name\": \"a\", \"creator\": \"A\"},\n{\"name\": \"a\", \"creator\": \"A\"}]"),
        "a.json:2:1: object \"a\", key \"name\": line 1 has another object of this name");
    EXPECT_NE(complaint(R"("contexts": [{"name": "c"}, {"name": "c"}])"), "");
}

TEST(NetworkReader, RefusesReferencesToWhatIsNotThere)
{
    EXPECT_EQ(complaint(R"("objects": [{"name": "a", "creator": "A", "inputs": {"x": "b.y"}}])"),
              "a.json:1:78: object \"a\", key \"inputs.x\": there is no object \"b\" in this file");
    EXPECT_NE(complaint(R"("contexts": [{"name": "c", "values": {"b": {}}}])"), "");
    EXPECT_NE(complaint(R"("request": ["b"])"), "");
    EXPECT_NE(
        complaint(
            R"("objects": [{"name": "a", "creator": "A"}], "request": [{"object": "a", "contexts": ["c"]}])"),
        "");
    EXPECT_NE(complaint(R"("save": [{"object": "b", "file": "f"}])"), "");
}

TEST(NetworkReader, RefusesAValueForAConnectedInput)
{
    EXPECT_NE(
        complaint(
            R"("objects": [{"name": "a", "creator": "A", "values": {"x": 1}, "inputs": {"x": "a.y"}}])"),
        "");
}

TEST(NetworkReader, ReadsMoreThanAnybodyWouldDraw)
{
    std::string text = R"({"zelm-network": 1, "objects": [)";
    constexpr int kObjects = 100'000;
    for (int number = 0; number < kObjects; ++number)
        text += std::string(number == 0 ? "" : ",") + R"({"name": "o)" + std::to_string(number) +
                R"(", "creator": "A"})";

    EXPECT_EQ(read(text + "]}").objects.size(), static_cast<std::size_t>(kObjects));
}

} // namespace
} // namespace Zelm
