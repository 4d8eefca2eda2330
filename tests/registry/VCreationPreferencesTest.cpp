#include <quorl/registry/VCreationPreferences.h>

#include <quorl/foundation/Intercube.h>

#include <gtest/gtest.h>

#include <initializer_list>
#include <vector>

namespace Quorl
{
namespace
{

/// Gives words the weights that a test wants.
struct Weigh final : VCreationPreferences::Iterator
{
    explicit Weigh(std::initializer_list<double> w) : weights(w) {}
    bool apply(const string&, double& weight) override
    {
        weight = weights.at(next++);
        return true;
    }
    std::vector<double> weights;
    std::size_t next = 0;
};

VCreationPreferences weighted(VCreationPreferences words, std::initializer_list<double> weights)
{
    Weigh weigh(weights);
    words.iterate(weigh);
    return words;
}

TEST(VCreationPreferences, IgnoresAnEmptyWordOnlyWhereItIsTheOnlyOne)
{
    EXPECT_EQ(VCreationPreferences("").size(), 0U);
    EXPECT_EQ(VCreationPreferences("a").size(), 1U);
    const VCreationPreferences two("", "a");
    EXPECT_EQ(two.size(), 2U);
    EXPECT_TRUE(two.contains(""));
    EXPECT_EQ(VCreationPreferences("", "a", "b").size(), 3U);
    EXPECT_EQ(VCreationPreferences("a", "a", "b").size(), 2U);
}

TEST(VCreationPreferences, CopiesAlsoWhatIsBehindAHandle)
{
    const RefPtr<VCreationPreferences> words(new VCreationPreferences("a", "b"));

    EXPECT_EQ(VCreationPreferences(words).size(), 2U);
    EXPECT_EQ(VCreationPreferences(*words).size(), 2U);
    EXPECT_EQ(VCreationPreferences(RefPtr<VCreationPreferences>()).size(), 0U);
}

TEST(VCreationPreferences, ResetsTheWeightOfAWordThatIsAdded)
{
    VCreationPreferences words = weighted(VCreationPreferences("a"), {7.0});
    EXPECT_EQ(words.weight("a"), 7.0);
    words += "a";
    words += "b";

    EXPECT_EQ(words.weight("a"), 1.0);
    EXPECT_EQ(words.weight("b"), 1.0);
    EXPECT_EQ(words.weight("c"), 0.0);
    EXPECT_FALSE(words.contains("A"));
}

TEST(VCreationPreferences, ScoresOneForNothingInCommon)
{
    const VCreationPreferences none;
    const VCreationPreferences words("a", "b");

    EXPECT_EQ(none.weight(words), 1.0);
    EXPECT_EQ(words.weight(none), 1.0);
    EXPECT_EQ(words.weight(VCreationPreferences("c")), 1.0);
    EXPECT_EQ(none.weight(none), 1.0);
}

TEST(VCreationPreferences, AddsTheProductsOfTheCommonWords)
{
    const VCreationPreferences first = weighted({"x", "y"}, {2.0, 3.0});
    const VCreationPreferences second = weighted({"y", "z"}, {4.0, 5.0});

    EXPECT_EQ(first.weight(second), 13.0);
    EXPECT_EQ(second.weight(first), 13.0);
}

TEST(VCreationPreferences, CountsAllForAVisitorThatDoesNothing)
{
    VCreationPreferences words("a", "b", "c");
    VCreationPreferences::Iterator visitor;
    VCreationPreferences::ConstIterator constVisitor;
    const VCreationPreferences& constant = words;

    EXPECT_EQ(words.iterate(visitor), 3);
    EXPECT_EQ(constant.iterate(constVisitor), 3);
}

TEST(VCreationPreferences, DoesNotCountTheWordThatStoppedTheVisit)
{
    struct Stop final : VCreationPreferences::ConstIterator
    {
        explicit Stop(const string& last) : stopAt(last) {}
        bool apply(const string& word, double) override { return word != stopAt; }
        string stopAt;
    };
    const VCreationPreferences words("a", "b", "c");
    Stop first("a");
    Stop last("c");

    EXPECT_EQ(words.iterate(first), 0);
    EXPECT_EQ(words.iterate(last), 2);
}

TEST(VCreationPreferences, MayBeAssignedAndEndWhileTheyAreVisited)
{
    struct Change final : VCreationPreferences::ConstIterator
    {
        explicit Change(RefPtr<VCreationPreferences>& w) : words(w) {}
        bool apply(const string& word, double) override
        {
            seen += word;
            if (words) *words = VCreationPreferences("b", "y");
            words = RefPtr<VCreationPreferences>();
            return true;
        }
        RefPtr<VCreationPreferences>& words;
        string seen;
    };
    RefPtr<VCreationPreferences> words(new VCreationPreferences("a", "c", "x"));
    const WeakPtr<VCreationPreferences> watch = words;
    Change change(words);

    EXPECT_EQ(watch->iterate(change), 3);
    EXPECT_EQ(change.seen, "aby");
    EXPECT_FALSE(watch);
}

TEST(VCreationPreferences, CanSitInACube)
{
    Tolmen::Intercube cube;
    cube.addInterface(new VCreationPreferences("a"));

    const RefPtr<VCreationPreferences> found = cube.findInterface(typeid(VCreationPreferences));
    ASSERT_TRUE(found);
    EXPECT_TRUE(found->contains("a"));
}

} // namespace
} // namespace Quorl
