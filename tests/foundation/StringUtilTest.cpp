#include <quorl/foundation/StringUtil.h>

#include <gtest/gtest.h>

#include <list>
#include <string>

namespace Tolmen
{
namespace
{

using Fields = std::list<std::string>;

Fields split(const std::string& text, bool keepEmpty, char end = '#')
{
    Fields fields;
    const int count = StringUtil::split(text, fields, ',', keepEmpty, end);
    EXPECT_EQ(count, static_cast<int>(fields.size())) << text;
    return fields;
}

TEST(StringUtilSplit, MakesEmptyFieldsOnlyIfToldSo)
{
    EXPECT_EQ(split("a,,b", false), (Fields{"a", "b"}));
    EXPECT_EQ(split("a,,b", true), (Fields{"a", "", "b"}));
    EXPECT_EQ(split(",a", true), (Fields{"", "a"}));
    EXPECT_EQ(split(",a", false), (Fields{"a"}));
    EXPECT_EQ(split(",", true), (Fields{""}));
    EXPECT_EQ(split(",", false), Fields{});
}

TEST(StringUtilSplit, MakesNoFieldBehindTheLastSeparator)
{
    EXPECT_EQ(split("a,b,", false), (Fields{"a", "b"}));
    EXPECT_EQ(split("a,b,", true), (Fields{"a", "b"}));
}

TEST(StringUtilSplit, EndsBeforeTheEndCharacter)
{
    EXPECT_EQ(split("a,b#c,d", false), (Fields{"a", "b"}));
    EXPECT_EQ(split("#a", false), Fields{});
    EXPECT_EQ(split("", true), Fields{});
    EXPECT_EQ(split("abc", true), Fields{"abc"});
    EXPECT_EQ(split("a,#b", true), Fields{"a"}) << "an empty rest before the end is none";
    EXPECT_EQ(split("a,b", true, ','), Fields{"a"}) << "the end outranks the separator";
}

TEST(StringUtilSplit, AppendsAndCountsTheNewFieldsAlone)
{
    Fields fields{"before"};
    EXPECT_EQ(StringUtil::split(std::string("a,b"), fields, ',', false, '#'), 2);
    EXPECT_EQ(fields, (Fields{"before", "a", "b"}));
}

TEST(StringUtil, ReplacesEachCharacter)
{
    EXPECT_EQ(StringUtil::subst(std::string("a.b.c"), '.', '/'), "a/b/c");
    EXPECT_EQ(StringUtil::subst(std::string(), '.', '/'), "");
    EXPECT_EQ(StringUtil::subst(std::wstring(L"a.b"), L'.', L'/'), L"a/b");
}

TEST(StringUtil, KnowsTheHeadOfAText)
{
    const std::string text = "qZelm::x";
    EXPECT_TRUE(StringUtil::starts_with(text, std::string("qZelm::")));
    EXPECT_TRUE(StringUtil::starts_with(text, std::string()));
    EXPECT_FALSE(StringUtil::starts_with(text, std::string("qZelm::xy")));
}

} // namespace
} // namespace Tolmen
