#include <quorl/foundation/RefPtr.h>

#include <tests/foundation/HandleTestTypes.h>

#include <gtest/gtest.h>

#include <type_traits>
#include <utility>

namespace QuorlTest
{
namespace
{

static_assert(std::is_nothrow_move_constructible_v<RefPtr<Left>>);
static_assert(std::is_nothrow_move_constructible_v<WeakPtr<Left>>);

TEST(HandleMove, TakesTheSharesOver)
{
    RefPtr<Left> source(new Left);
    const WeakPtr<Root> observer(source);
    const RefPtr<Left> strong(std::move(source));
    EXPECT_EQ(source.referer, nullptr);
    EXPECT_EQ(counts(observer), (Counts{1, 3}));
    EXPECT_EQ(strong->number, 1);

    WeakPtr<Left> weakSource(strong);
    const WeakPtr<Left> weak(std::move(weakSource));
    EXPECT_EQ(weakSource.referer, nullptr);
    EXPECT_EQ(counts(observer), (Counts{1, 4}));
    EXPECT_EQ(weak.rawptr(), strong.rawptr());
}

TEST(HandleMove, EndsWhatTheTargetHeldBeforeTheSourceIsLookedAt)
{
    RefPtr<Root> source(new Root);
    const WeakPtr<Root> newOne(source);
    RefPtr<Root> target(new Root);
    const WeakPtr<Root> oldOne(target);
    bool wasSourceAlive = false;
    target->whenEnding = [&] { wasSourceAlive = source.rawptr() == newOne.rawptr(); };
    target = std::move(source);
    EXPECT_TRUE(wasSourceAlive);
    EXPECT_TRUE(!oldOne);
    EXPECT_EQ(target.rawptr(), newOne.rawptr());
    EXPECT_EQ(counts(newOne), (Counts{1, 3}));
}

TEST(HandleMove, LeavesBothAloneIfTheyHoldOneBlock)
{
    RefPtr<Root> one(new Root);
    RefPtr<Root> other(one);
    other = std::move(one);
    EXPECT_EQ(counts(other), (Counts{2, 3}));
    RefPtr<Root>& itself = other;
    other = std::move(itself);
    EXPECT_EQ(counts(other), (Counts{2, 3}));
}

TEST(HandleMove, OfAStrongHandleIntoAWeakOneTakesNothingAway)
{
    RefPtr<Root> strong(new Root);
    const WeakPtr<Root> made(std::move(strong));
    EXPECT_EQ(counts(made), (Counts{1, 3}));
    WeakPtr<Root> assigned;
    assigned = std::move(strong);
    EXPECT_EQ(counts(made), (Counts{1, 4}));
    assigned = RefPtr<Root>(new Root);
    EXPECT_TRUE(!assigned);
    EXPECT_EQ(counts(made), (Counts{1, 3}));
}

TEST(HandleMove, OfADeadHandleKeepsTheBlock)
{
    RefPtr<Root> dead(new Root);
    delete dead.rawptr();
    const RefPtr<Root> moved(std::move(dead));
    EXPECT_TRUE(!moved);
    EXPECT_EQ(counts(moved), (Counts{-1, 1}));
}

} // namespace
} // namespace QuorlTest
