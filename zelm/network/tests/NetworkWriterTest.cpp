#include <zelm/network/NetworkWriter.h>

#include "Complaint.h"
#include <tests/support/FileBytes.h>
#include <tests/support/TemporaryFolder.h>
#include <zelm/network/NetworkReader.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace Zelm
{
namespace
{

using QuorlTest::bytesOf;
using QuorlTest::TemporaryFolder;

constexpr const char* kCanonical = R"({
  "zelm-network": 1,
  "title": "Hills",
  "objects": [
    {"name": "source", "creator": "Test/Source", "module": "test.zelm", "preferences": ["local"], "values": {"x": 1.5, "t": "a\"b"}},
    {"name": "sink", "creator": "Test/Sink", "preferences": {"fast": 0.25}, "inputs": {"a": "source.x", "b": {"object": "source", "output": "y.z", "note": "by hand"}, "c": {"object": "source", "input": "x", "member": "re"}}, "at": [1, {"b": 0, "a": null}]}
  ],
  "contexts": [
    {"name": "one", "named": {"step": {"type": "double", "value": 0.5, "unit": "mm"}}, "values": {
      "source": {"x": "inf"},
      "sink": {"d": {"type": "Colour", "text": "1 2 3"}}
    }},
    {"name": "two"}
  ],
  "request": [
    "sink",
    {"object": "sink", "contexts": ["two"], "precision": 0.5}
  ],
  "save": [
    {"object": "sink", "file": "a.txt"}
  ]
}
)";

std::string rewritten(const std::string& text)
{
    return writtenNetwork(readNetwork("a.json", text));
}

TEST(NetworkWriter, WritesItsOwnTextAgain)
{
    EXPECT_EQ(rewritten(kCanonical), kCanonical);
}

TEST(NetworkWriter, WritesOneFormWhateverTheOrderAndTheBlanks)
{
    const std::string text = R"({"save":[], "request":["a"], /* c */ "objects":
        [{"values":{"x":1.50}, "creator":"A", "extra":null, "name":"a"}], "zelm-network":1})";

    EXPECT_EQ(rewritten(text), R"({
  "zelm-network": 1,
  "objects": [
    {"name": "a", "creator": "A", "values": {"x": 1.5}, "extra": null}
  ],
  "request": [
    "a"
  ]
}
)");
}

TEST(NetworkWriter, WritesAnEmptyNetwork)
{
    EXPECT_EQ(writtenNetwork({}), "{\n  \"zelm-network\": 1\n}\n");
}

TEST(NetworkWriter, RefusesTextsThatAreNotUtf8)
{
    NetworkDocument document;
    document.objects.push_back({});
    document.objects[0].name = "\xff";

    EXPECT_NE(complaintOf([&] { writtenNetwork(document); }), "");
}

TEST(NetworkWriter, ReplacesAFileAndLeavesNothingBeside)
{
    const TemporaryFolder folder;
    const NetworkDocument document = readNetwork("a.json", kCanonical);

    writeNetworkFile(document, folder / "a.json");
    writeNetworkFile(document, folder / "a.json");

    EXPECT_EQ(bytesOf(folder / "a.json"), kCanonical);
    EXPECT_EQ(folder.count(), 1U);
}

TEST(NetworkWriter, TellsWhyAFileCannotBeWritten)
{
    const TemporaryFolder folder;
    const std::string missing = (folder / "missing" / "a.json").string();
    std::filesystem::create_directory(folder / "taken.json");

    EXPECT_EQ(complaintOf([&] { writeNetworkFile({}, missing); }),
              missing + ": this cannot be written: No such file or directory");
    EXPECT_NE(complaintOf([&] { writeNetworkFile({}, folder / "taken.json"); }), "");
    EXPECT_EQ(folder.count(), 1U);
}

} // namespace
} // namespace Zelm
