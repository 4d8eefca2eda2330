#include "HostFixture.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>
#include <string>

namespace Zelm
{
namespace
{

/// A line with a file, and one with what is said of it behind its name.
constexpr const char* kFiles = R"({
:1:2: syntax error while parsing object key - unexpected end of input; expected string literal
[]
:1:1: an object is expected here, not a list
nothing
:1:2: syntax error while parsing value - invalid literal; last read: 'no'
{"zelm-network": 2}
:1:18: key "zelm-network": this file is of version 2; this program reads version 1
{"zelm-network": 1}
: there are no objects in it
{"zelm-network": 1, "objects": []}
: there are no objects in it
{"zelm-network": 1, "objects": {}}
:1:32: key "objects": a list is expected here, not an object
{"zelm-network": 1, "objects": [{"name": "a"}]}
:1:33: object "a": the key "creator" is missing
{"zelm-network": 1, "objects": [{"name": "", "creator": "Test/Sum"}]}
:1:42: key "objects.name": this must not be empty
{"zelm-network": 1, "objects": [{"name": "a", "creator": "Test/Gone"}]}
:1:33: object "a", key "creator": there is no creator "Test/Gone"
{"zelm-network": 1, "objects": [{"name": "a", "creator": "Test/Gone", "module": "gone.zelm"}]}
:1:33: object "a", key "creator": there is no creator "Test/Gone"; the module "gone.zelm" had it when this was written
{"zelm-network": 1, "objects": [{"name": "a", "creator": "Test/Sum"}, {"name": "a", "creator": "Test/Sum"}]}
:1:71: object "a", key "name": line 1 has another object of this name
{"zelm-network": 1, "objects": [{"name": "a", "name": "b", "creator": "Test/Sum"}]}
:1:47: the key "name" stands here a second time
{"zelm-network": 1, "objects": [{"name": "a", "creator": "Test/Sum", "values": {"left": "much"}}]}
:1:89: object "a", key "values.left": a number is expected here, not "much"
{"zelm-network": 1, "objects": [{"name": "a", "creator": "Test/Sum", "values": {"up": 1}}]}
:1:87: object "a", key "values.up": there is no input "up"; it has left, note, right, scale
{"zelm-network": 1, "objects": [{"name": "a", "creator": "Test/Sum", "inputs": {"left": "b.sum"}}]}
:1:89: object "a", key "inputs.left": there is no object "b" in this file
{"zelm-network": 1, "objects": [{"name": "a", "creator": "Test/Sum", "inputs": {"left": "a.product"}}]}
:1:89: object "a", key "inputs.left": "a" has no output "product"; it has sum
{"zelm-network": 1, "objects": [{"name": "a", "creator": "Test/Sum", "inputs": {"note": "a.sum"}}]}
:1:89: object "a", key "inputs.note": this takes string, not double
{"zelm-network": 1, "objects": [{"name": "a", "creator": "Test/Sum", "inputs": {"left": "asum"}}]}
:1:89: object "a", key "inputs.left": "object.slot" is expected here; names with points in them are told as {"object": ..., "output": ...}
{"zelm-network": 1, "objects": [{"name": "a", "creator": "Test/Sum"}], "contexts": [{"name": "one"}, {"name": "one"}]}
:1:102: context "one", key "name": line 1 has another context of this name
{"zelm-network": 1, "objects": [{"name": "a", "creator": "Test/Sum"}], "contexts": [{"name": "one", "values": {"b": {"left": 1}}}]}
:1:117: context "one", key "values.b": there is no object "b" in this file
{"zelm-network": 1, "objects": [{"name": "a", "creator": "Test/Sum"}], "contexts": [{"name": "one", "values": {"a": {"scale": 1}}}]}
:1:127: context "one", key "values.a.scale": this input has one value for all contexts, which belongs to the values of its object
{"zelm-network": 1, "objects": [{"name": "a", "creator": "Test/Sum"}], "request": ["b"]}
:1:84: key "request": there is no object "b" in this file
{"zelm-network": 1, "objects": [{"name": "a", "creator": "Test/Sum"}], "request": [{"object": "a", "contexts": ["two"]}]}
:1:84: key "request": there is no context "two" in this file
{"zelm-network": 1, "objects": [{"name": "a", "creator": "Test/Sum"}], "save": [{"object": "b", "file": "b.txt"}]}
:1:81: key "save": there is no object "b" in this file
{"zelm-network": 1, "objects": [{"name": "a", "creator": "Test/Sum"}], "save": [{"object": "a"}]}
:1:81: key "save": the key "file" is missing
{"zelm-network": 1, "objects": [{"name": "a", "creator": "Test/Sum"}]} more
:1:72: syntax error while parsing value - invalid literal; last read: '"Test/Sum"}]} m'; expected end of input
)";

class WrongFile : public HostFixture
{
protected:
    void expect(const std::string& text, const std::string& line)
    {
        writeBytes(folder / "a.json", text);
        zelm("run a.json");
        EXPECT_EQ(status, 1) << text.substr(0, 200);
        EXPECT_EQ(err, "zelm: a.json" + line + "\n");
        EXPECT_EQ(out, "") << text.substr(0, 200);
    }
};

TEST_F(WrongFile, IsToldWithItsPlace)
{
    std::istringstream files(kFiles);
    std::string text;
    for (std::string line; std::getline(files, text) && std::getline(files, line);)
        expect(text, line);
}

TEST_F(WrongFile, IsToldIfItIsEmptyOrNoText)
{
    expect("", ":1:1: syntax error while parsing value - unexpected end of input; expected '[', "
               "'{', or a literal");
    expect("\xff{", ":1:1: syntax error while parsing value - invalid literal; last read: '\xff'");
}

TEST_F(WrongFile, IsToldIfItHasNoEnd)
{
    std::filesystem::create_symlink("/dev/zero", folder / "a.json");
    zelm("run a.json");
    expectComplaint(1, "a.json: this is a device, not a file");

    runCommand("mkfifo " + (folder / "b.json").string() + " && { yes >" +
               (folder / "b.json").string() + " 2>/dev/null & } && " + commandOf("run b.json"));
    expectComplaint(1, "b.json: this pipe brings more than 64 MiB");
}

TEST_F(WrongFile, IsToldIfItIsNestedDeeply)
{
    expect(std::string(100'000, '['), ":1:101: this is nested more than 100 deep");
    expect(R"({"zelm-network": 1, "x":)" + std::string(200, '[') + std::string(200, ']') + "}",
           ":1:124: this is nested more than 100 deep");
}

} // namespace
} // namespace Zelm
