#include <quorl/foundation/RefPtr.h>

#include <tests/foundation/HandleTestTypes.h>

#include <gtest/gtest.h>

#include <map>
#include <type_traits>
#include <utility>
#include <vector>

namespace QuorlTest
{
namespace
{

static_assert(std::is_nothrow_move_constructible_v<RefPtr<Left>>);

TEST(HandleMove, TakesTheSharesOver)
{
    RefPtr<Left> source(new Left);
    const WeakPtr<Root> observer(source);
    const RefPtr<Left> strong(std::move(source));
    EXPECT_EQ(source.referer, nullptr);
    EXPECT_EQ(counts(observer), (Counts{1, 3}));
    EXPECT_EQ(strong->number, 1);
}

TEST(HandleMove, EndsWhatTheTargetHeldWhileTheNewOneIsAlive)
{
    RefPtr<Root> source(new Root);
    const WeakPtr<Root> newOne(source);
    RefPtr<Root> target(new Root);
    const WeakPtr<Root> oldOne(target);
    bool wasNewOneAlive = false;
    target->whenEnding = [&] { wasNewOneAlive = !!newOne; };
    target = std::move(source);
    EXPECT_TRUE(wasNewOneAlive);
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

TEST(HandleMove, OfAStrongHandleThatIsSeenAsAWeakOneTakesNothingAway)
{
    const int before = Tolmen::RefererObjects;
    {
        std::vector<WeakPtr<Root>> list;
        list.push_back(RefPtr<Root>(new Root));
        std::map<WeakPtr<Root>, int> map;
        map[RefPtr<Root>(new Root)] = 1;
        EXPECT_TRUE(!list.front());
        EXPECT_TRUE(!map.begin()->first);
    }
    EXPECT_EQ(Tolmen::RefererObjects, before);
}

struct Link : Root
{
    RefPtr<Link> next;
};

TEST(HandleMove, TakesFromWhatEndsByIt)
{
    RefPtr<Link> first(new Link);
    first->next = new Link;
    const WeakPtr<Link> second(first->next);
    first = std::move(first->next);
    EXPECT_EQ(first.rawptr(), second.rawptr());
    EXPECT_EQ(counts(WeakPtr<Root>(second)), (Counts{1, 4}));
}

/// What an object may do to the last handle that has it, while it ends.
TEST(HandleMove, IsClearedByWhatItEnds)
{
    const int before = Tolmen::RefererObjects;
    for (int way = 0; way < 4; ++way)
    {
        RefPtr<Root> handle(new Root);
        const RefPtr<Root> null;
        auto& act = way % 2 == 0 ? handle->whenEnding : handle->whenDestroyed;
        act = [&handle, &null, way] {
            if (way < 2)
                handle = RefPtr<Root>();
            else
                handle = null;
        };
        handle = RefPtr<Root>();
        EXPECT_EQ(handle.referer, nullptr);
    }
    {
        auto* handle = new RefPtr<Root>(new Root);
        (*handle)->whenEnding = [handle] { *handle = RefPtr<Root>(); };
        delete handle;
    }
    EXPECT_EQ(Tolmen::RefererObjects, before);
}

TEST(HandleMove, IntoAHandleOfAnotherTypeTakesTheSharesOver)
{
    RefPtr<Left> source(new Left);
    const WeakPtr<Root> observer(source);
    RefPtr<Root> root(std::move(source));
    EXPECT_EQ(source.referer, nullptr);
    EXPECT_EQ(counts(observer), (Counts{1, 3}));
    const RefPtr<Left> left(std::move(root));
    EXPECT_EQ(left->number, 1);
    EXPECT_EQ(counts(observer), (Counts{1, 3}));
}

TEST(HandleMove, IntoAHandleThatDoesNotFitKeepsTheObject)
{
    RefPtr<Root> source(new Left);
    const WeakPtr<Root> observer(source);
    {
        const RefPtr<Right> other(std::move(source));
        EXPECT_TRUE(!other);
        EXPECT_EQ(counts(observer), (Counts{1, 3}));
    }
    EXPECT_TRUE(!observer);
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
