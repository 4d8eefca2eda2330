#include <quorl/registry/VCreatorProperties.h>

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace Quorl
{
namespace
{

using Elements = VCreatorPropertyElements;

VCreatorProperties fromKey(const string& key)
{
    return VCreatorProperties(key, "", "");
}

/// Category, name and variant.
string partsOf(const VCreatorProperties& properties)
{
    return properties.element[Elements::Category] + "|" + properties.element[Elements::Name] + "|" +
           properties.element[Elements::Variant];
}

TEST(VCreatorProperties, ReadsCategoryNameAndVariantOfAKey)
{
    EXPECT_EQ(partsOf(fromKey("Filter/Smooth(Fast)")), "Filter|Smooth|Fast");
    EXPECT_EQ(partsOf(fromKey("A/B/C")), "A/B|C|");
    EXPECT_EQ(partsOf(fromKey("Smooth")), "|Smooth|");
    EXPECT_EQ(partsOf(fromKey("/X")), "|X|");
    EXPECT_EQ(partsOf(fromKey("X/")), "X||");
    EXPECT_EQ(partsOf(fromKey("")), "||");
}

TEST(VCreatorProperties, LooksForParenthesesAtTheVeryEndOnly)
{
    EXPECT_EQ(partsOf(fromKey("A(B)/C")), "A(B)|C|");
    EXPECT_EQ(partsOf(fromKey("Smooth(Fast")), "|Smooth(Fast|");
    EXPECT_EQ(partsOf(fromKey("Smooth)")), "|Smooth)|");
    EXPECT_EQ(partsOf(fromKey(")")), "|)|");
    EXPECT_EQ(partsOf(fromKey("X()")), "|X|");
    EXPECT_EQ(partsOf(fromKey("A(b)(c)")), "|A(b)|c");
    EXPECT_EQ(partsOf(fromKey("A(b/c)")), "|A|b/c") << "the variant goes first";
}

TEST(VCreatorProperties, LeavesWhatAKeyDoesNotTell)
{
    VCreatorProperties properties = fromKey("Filter/Smooth(Fast)");
    properties.initializeFromKey("Sharpen");
    EXPECT_EQ(partsOf(properties), "Filter|Sharpen|Fast");
    properties.initializeFromKey("");
    EXPECT_EQ(partsOf(properties), "Filter|Sharpen|Fast");
}

TEST(VCreatorProperties, KeepsItsFurtherArguments)
{
    const VCreatorProperties properties("A/B", "third", "fourth");
    EXPECT_EQ(properties.element[3], "third");
    EXPECT_EQ(properties.element[4], "fourth");
    for (const std::size_t index : {2, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16})
        EXPECT_EQ(properties.element[index], "") << index;
}

TEST(VCreatorProperties, GivesTheKeyBackWithASlash)
{
    EXPECT_EQ(fromKey("Filter/Smooth(Fast)").keyname("/"), "Filter/Smooth(Fast)");
    EXPECT_EQ(fromKey("Filter/Smooth(Fast)").keyname("::"), "Filter::Smooth(Fast)");
    EXPECT_EQ(fromKey("Smooth(Fast)").keyname("/"), "Smooth(Fast)");
    EXPECT_EQ(fromKey("A/B/C").keyname("/"), "A/B/C");
    EXPECT_EQ(VCreatorPropertyBase().keyname("/"), "");
}

/// Every key whose parts are not empty comes back, and so do its parts.
TEST(VCreatorProperties, GivesRandomKeysBack)
{
    const auto seed = std::random_device()();
    std::mt19937 random(seed);
    const auto text = [&](const string& alphabet) {
        string made;
        for (auto left = 1 + random() % 6; left > 0; --left)
            made += alphabet[random() % alphabet.size()];
        return made;
    };
    for (int round = 0; round < 2000; ++round)
    {
        const string category = random() % 2 ? text("ab(/)") : "";
        const string name = text("ab(") + (random() % 2 ? "" : "c");
        const string variant = random() % 2 ? text("ab)/") : "";
        const string key = (category.empty() ? "" : category + "/") + name +
                           (variant.empty() ? "" : "(" + variant + ")");
        EXPECT_EQ(partsOf(fromKey(key)), category + "|" + name + "|" + variant)
            << key << ", seed " << seed;
        EXPECT_EQ(fromKey(key).keyname("/"), key) << "seed " << seed;
    }
}

TEST(VCreatorPropertyBase, MergesWhatIsNotEmpty)
{
    VCreatorPropertyBase mine;
    mine.element[Elements::AuthorName] = "me";
    mine.element[16] = "old";
    VCreatorPropertyBase other;
    other.element[16] = "new";
    other.element[0] = "category";
    mine.assign(other);

    EXPECT_EQ(mine.Author(), "me");
    EXPECT_EQ(mine.element[16], "new");
    EXPECT_EQ(mine.element[0], "category");
    mine.assign(mine);
    EXPECT_EQ(mine.Author(), "me");
}

TEST(VCreatorPropertyBase, HasSeventeenElements)
{
    EXPECT_EQ(VCreatorPropertyBase().element.size(), 17U);
}

} // namespace
} // namespace Quorl
