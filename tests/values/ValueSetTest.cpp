#include <quorl/values/ValueSet.h>

#include <quorl/values/VValue.h>

#include <gtest/gtest.h>

#include <stdexcept>

namespace Quorl
{
namespace
{

RefPtr<VValue<string>> make(const string& datum)
{
    return RefPtr<VValue<string>>(new VValue<string>(datum));
}

RefPtr<ValueSet> setOf(const string& datum)
{
    const RefPtr<ValueSet> set(new ValueSet);
    set->addValue(make(datum));
    return set;
}

TEST(ValueSet, QuotesEachValueWithNothingBetween)
{
    ValueSet set;
    set.addValue(WeakPtr<VValueBase>());
    set.addValue(make("a"));

    EXPECT_EQ(set.key, "'''a'");
}

TEST(ValueSet, CannotBeEndedEarlyByAQuoteInAValue)
{
    EXPECT_EQ(setOf("it's")->key, "'it\"s'");
}

TEST(ValueSet, QuotesNothingForAValueThatHasEnded)
{
    WeakPtr<VValueBase> dead;
    {
        const auto shortLived = make("gone");
        dead = shortLived;
    }
    ValueSet set;
    set.addValue(dead);
    set.addValue(make(""));

    EXPECT_EQ(set.key, "''''");
}

TEST(ValueSet, LeavesAValueThatNobodyOwnsAlone)
{
    const VValue<string> onTheStack("a");
    ValueSet set;
    set.addValue(&onTheStack);
    set.addValue(&onTheStack);

    EXPECT_EQ(set.key, "'a''a'");
}

TEST(ValueSet, IsOrderedByItsKey)
{
    const lessValueSetPtr less;

    EXPECT_TRUE(less(setOf("a"), setOf("b")));
    EXPECT_FALSE(less(setOf("b"), setOf("a")));
    EXPECT_FALSE(less(setOf("a"), setOf("a")));
}

TEST(ValueSet, IsEquivalentToAllOthersIfDead)
{
    const lessValueSetPtr less;
    const RefPtr<ValueSet> none;
    auto* const ended = new ValueSet;
    const RefPtr<ValueSet> dead(ended);
    ended->key = "a";
    delete ended;

    EXPECT_FALSE(less(dead, setOf("b")));
    EXPECT_FALSE(less(setOf("0"), dead));
    EXPECT_FALSE(less(none, setOf("a")));
    EXPECT_FALSE(less(setOf("a"), none));
    EXPECT_FALSE(less(none, none));
}

TEST(ValueSet, LeavesNoOpenQuoteIfATextCannotBeWritten)
{
    class Mute final : public VValue<int>
    {
    public:
        string Text() const override { throw std::runtime_error("no text"); }
    };
    const RefPtr<VValueBase> mute(new Mute);
    ValueSet set;
    set.addValue(RefPtr<VValueBase>(new VValue<int>(1)));
    EXPECT_THROW(set.addValue(mute), std::runtime_error);
    EXPECT_EQ(set.key, "'1'");
}

} // namespace
} // namespace Quorl
