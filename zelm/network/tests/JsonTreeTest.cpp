#include <zelm/network/JsonTree.h>

#include "Complaint.h"
#include <tests/support/TemporaryFolder.h>

#include <gtest/gtest.h>

#include <string>

namespace Zelm
{
namespace
{

std::string complaint(const std::string& text)
{
    return complaintOf([&] { JsonTree("a.json", text); });
}

/// Where a member of the outermost object has its value, as "line:column".
std::string placeOf(const std::string& text, const std::string& key)
{
    const JsonTree tree("a.json", text);
    for (const JsonMember& member : tree.root().members)
        if (member.key == key)
        {
            const Place place = tree.placeOf(member.value.offset);
            return std::to_string(place.line) + ":" + std::to_string(place.column);
        }
    return "nowhere";
}

TEST(JsonTree, KeepsTheOrderOfMembersAndAllKindsOfValues)
{
    const JsonTree tree("a.json", R"({"z": 1, "a": [true, null, -2.5e3, "ä\n"], "m": {"x": {}}})");

    EXPECT_EQ(tree.root().plain().dump(), R"({"z":1,"a":[true,null,-2500.0,"ä\n"],"m":{"x":{}}})");
}

TEST(JsonTree, ReadsComments)
{
    const JsonTree tree("a.json", "// one\n{ /* two\n */ \"a\": /**/ 1 // three\n}");

    EXPECT_EQ(tree.root().plain().dump(), R"({"a":1})");
}

TEST(JsonTree, TellsWhereValuesBegin)
{
    const std::string text = "{\"a\": 1,\n  // 2, \"c\": 3\n  \"b\" /*:*/ : [2 , 3], \"c\":\n"
                             "true, \"d\": \"\\u00e4,\", \"e\": 12345,\"f\":{}}";

    EXPECT_EQ(placeOf(text, "a"), "1:7");
    EXPECT_EQ(placeOf(text, "b"), "3:15");
    EXPECT_EQ(placeOf(text, "c"), "4:1");
    EXPECT_EQ(placeOf(text, "d"), "4:12");
    EXPECT_EQ(placeOf(text, "e"), "4:28");
    EXPECT_EQ(placeOf(text, "f"), "4:38");
}

TEST(JsonTree, CountsCharactersNotBytes)
{
    EXPECT_EQ(placeOf("{\"äöü\": 0, \"x\": 1}", "x"), "1:17");
}

TEST(JsonTree, CountsInALongLineAsInAShortOne)
{
    std::string text = "{\n\"a\": \"";
    for (int count = 0; count < 5000; ++count) text += "ä";
    text += "\", \"x\": 1}";

    EXPECT_EQ(placeOf(text, "x"), "2:5015");
}

TEST(JsonTree, PassesOverAByteOrderMark)
{
    EXPECT_EQ(JsonTree("a.json", "\xEF\xBB\xBF{\"a\": 1}").root().plain().dump(), R"({"a":1})");
}

TEST(JsonTree, RefusesWhatIsNoJson)
{
    EXPECT_EQ(complaint(""),
              "a.json:1:1: syntax error while parsing value - unexpected end of input; "
              "expected '[', '{', or a literal");
    EXPECT_EQ(complaint("{\n  \"a\": 1,\n}").substr(0, 24), "a.json:3:1: syntax error");
    EXPECT_NE(complaint("{} x"), "");
    EXPECT_NE(complaint("{\"a\": 01}"), "");
    EXPECT_NE(complaint("{\"a\": nan}"), "");
    EXPECT_NE(complaint("{\"a\": 1e999}"), "");
    EXPECT_NE(complaint("{\"a\": \"\xff\"}"), "");
    EXPECT_NE(complaint("{ /* "), "");
    EXPECT_NE(complaint(std::string("{\"a\": 1\0}", 9)), "");
}

TEST(JsonTree, RefusesAKeyThatStandsTwice)
{
    EXPECT_EQ(complaint("{\"a\": {\"b\": 1,\n\"b\": 2}}"),
              "a.json:2:1: the key \"b\" stands here a second time");
}

TEST(JsonTree, RefusesWhatIsNestedTooDeep)
{
    const std::string deep(JsonTree::kDeepest, '[');
    const std::string end(JsonTree::kDeepest, ']');

    EXPECT_EQ(complaint(deep + end), "");
    EXPECT_EQ(complaint("[" + deep + end + "]"), "a.json:1:101: this is nested more than 100 deep");
    EXPECT_NE(complaint(std::string(1'000'000, '[')), "");
    EXPECT_NE(complaint(std::string(1'000'000, '{')), "");
}

TEST(JsonTree, TellsOneLineWhateverTheFileHolds)
{
    for (const char* text :
         {"{\"a\nb\": 1}", "\n\x01", "{\"a\\nb\": 1, \"a\\nb\": 2}", "\"\\u0000", "\x1b[31m"})
        EXPECT_EQ(complaint(text).find_first_of("\n\r\x1b"), std::string::npos) << text;
}

TEST(JsonTree, TellsWhyAFileCannotBeRead)
{
    const QuorlTest::TemporaryFolder folder;

    EXPECT_EQ(complaintOf([] { JsonTree::ofFile("missing.json"); }),
              "missing.json: No such file or directory");
    EXPECT_EQ(complaintOf([&] { JsonTree::ofFile(folder.path()); }),
              folder.path().string() + ": this is a folder, not a file");
}

} // namespace
} // namespace Zelm
