#include <quorl/foundation/StrongPtr.h>

#include <tests/foundation/HandleTestTypes.h>

#include <gtest/gtest.h>

#include <type_traits>
#include <utility>

namespace QuorlTest
{
namespace
{

TEST(StrongPtr, CountsInBothCountersAndAWeakHandleInOne)
{
    const RefPtr<Root> first(new Root);
    EXPECT_EQ(counts(first), (Counts{1, 2}));
    const RefPtr<Root> second(first);
    EXPECT_EQ(counts(first), (Counts{2, 3}));
    {
        const WeakPtr<Root> weak(first);
        EXPECT_EQ(counts(first), (Counts{2, 4}));
        const RefPtr<Root> locked(weak);
        EXPECT_EQ(counts(first), (Counts{3, 5}));
    }
    EXPECT_EQ(counts(first), (Counts{2, 3}));
}

TEST(StrongPtr, ChangesNothingWhenAssignedItselfOrTheSameBlock)
{
    RefPtr<Root> first(new Left);
    const RefPtr<Root> same(first);
    const RefPtr<Left> typed(first);
    const WeakPtr<Root> weak(first);
    const Counts before = counts(first);
    const RefPtr<Root>& itself = first;
    first = itself;
    first = same;
    first = typed;
    first = weak;

    EXPECT_EQ(counts(first), before);
}

TEST(StrongPtr, EndsWhatItHeldWhenItIsAssignedAnother)
{
    bool isDestroyed = false;
    auto* const root = new Root;
    root->whenDestroyed = [&] { isDestroyed = true; };
    RefPtr<Root> handle(root);
    handle = new Root;

    EXPECT_TRUE(isDestroyed);
    EXPECT_EQ(counts(handle), (Counts{1, 2}));
}

TEST(StrongPtr, GivesBackBothSharesWhenItIsAssignedAnother)
{
    const RefPtr<Root> first(new Root);
    const RefPtr<Root> second(new Left);
    RefPtr<Root> handle(first);
    handle = second;

    EXPECT_EQ(counts(first), (Counts{1, 2}));
    EXPECT_EQ(counts(second), (Counts{2, 3}));
    handle = RefPtr<Root>();
    EXPECT_EQ(counts(second), (Counts{1, 2}));
    EXPECT_EQ(handle.referer, nullptr);
}

TEST(StrongPtr, LocksAWeakHandleThatIsAssigned)
{
    const RefPtr<Root> owner(new Left);
    const WeakPtr<Root> weak(owner);
    RefPtr<Root> locked;
    locked = weak;
    RefPtr<Left> typed;
    typed = weak;

    EXPECT_TRUE(typed);
    EXPECT_EQ(counts(owner), (Counts{3, 5}));
}

TEST(StrongPtr, LocksADeadObjectIntoADeadHandle)
{
    WeakPtr<Root> weak;
    {
        const RefPtr<Root> owner(new Root);
        weak = owner;
    }
    {
        const RefPtr<Root> locked(weak);
        EXPECT_TRUE(!locked);
        EXPECT_EQ(locked.rawptr(), nullptr);
        EXPECT_EQ(counts(weak), (Counts{-1, 2}));
        const RefPtr<Root> copied(locked);
        EXPECT_EQ(counts(weak), (Counts{-1, 3})) << "a weak share, no strong one";
        RefPtr<Root> assigned;
        assigned = locked;
        EXPECT_EQ(counts(weak), (Counts{-1, 4}));
    }
    EXPECT_EQ(counts(weak), (Counts{-1, 1}));
}

TEST(StrongPtr, OwnsAnObjectThatItCannotBeCastTo)
{
    bool isDestroyed = false;
    auto* const left = new Left;
    left->whenDestroyed = [&] { isDestroyed = true; };
    RefPtr<Root> root(left);
    RefPtr<Right> failed(root);
    EXPECT_EQ(counts(root), (Counts{2, 3}));
    root = RefPtr<Root>();
    EXPECT_FALSE(isDestroyed) << "held by the handle that is not alive itself";
    failed = RefPtr<Right>();

    EXPECT_TRUE(isDestroyed);
}

TEST(StrongPtr, LetsTheEndOfTheOldObjectComeBeforeTheNewOne)
{
    RefPtr<Root> child(new Root);
    const WeakPtr<Root> observer(child);
    auto* const parent = new Root;
    parent->whenDestroyed = [&] { child = RefPtr<Root>(); };
    RefPtr<Root> handle(parent);
    handle = observer;

    EXPECT_FALSE(handle) << "the parent took the child with it";
    EXPECT_EQ(handle, observer);
}

TEST(StrongPtr, DropsWhatTheEndOfTheOldObjectHasAssignedToIt)
{
    const RefPtr<Root> next(new Root);
    const RefPtr<Root> between(new Root);
    const Counts before = counts(between);
    for (const bool isMoved : {false, true})
    {
        SCOPED_TRACE(isMoved);
        auto* const root = new Root;
        RefPtr<Root> handle(root);
        RefPtr<Root> given(next);
        root->whenDestroyed = [&] { handle = between; };
        if (isMoved)
            handle = std::move(given);
        else
            handle = given;

        EXPECT_EQ(handle, next);
        EXPECT_EQ(counts(between), before);
    }
    EXPECT_EQ(counts(next), (Counts{1, 2}));
}

TEST(StrongPtr, CanBeAssignedFromAHandleThatEndsWithTheOldObject)
{
    struct Link : Root
    {
        RefPtr<Root> next;
    };
    auto* const first = new Link;
    RefPtr<Root> handle(first);
    const RefPtr<Root> second(new Root);
    first->next = second;
    handle = first->next;

    EXPECT_EQ(handle, second);
    EXPECT_TRUE(handle);
}

TEST(StrongPtr, MakesNothingOfANullPointer)
{
    const RefPtr<Root> fromNull(static_cast<Root*>(nullptr));
    const RefPtr<Left> typed(static_cast<Left*>(nullptr));
    const RefPtr<Root> fromHandle{RefPtr<Left>()};
    const RefPtr<Root> byDefault;

    EXPECT_EQ(fromNull.referer, nullptr);
    EXPECT_EQ(typed.referer, nullptr);
    EXPECT_EQ(fromHandle.referer, nullptr);
    EXPECT_EQ(fromNull, byDefault);
    EXPECT_TRUE(!fromNull);
}

TEST(StrongPtr, EndsAnObjectOnceItsLastHandleOfAnyTypeGoes)
{
    int destroyed = 0;
    auto* const left = new Left;
    left->whenDestroyed = [&] { ++destroyed; };
    {
        const RefPtr<Left> typed(left);
        RefPtr<Root> root(typed);
        const RefPtr<Left> back(root);
        root = RefPtr<Root>();
        EXPECT_EQ(destroyed, 0);
    }
    EXPECT_EQ(destroyed, 1);
}

TEST(StrongPtr, EndsAChainOfOwners)
{
    struct Link : Root
    {
        RefPtr<Root> next;
    };
    const auto blocks = Tolmen::RefererObjects;
    const auto objects = Tolmen::CheckRefcountedObjects;
    RefPtr<Root> first;
    for (int i = 0; i < 100; ++i)
    {
        auto* const link = new Link;
        link->next = first;
        first = link;
    }
    EXPECT_EQ(Tolmen::CheckRefcountedObjects, objects + 100);
    first = RefPtr<Root>();

    EXPECT_EQ(Tolmen::CheckRefcountedObjects, objects);
    EXPECT_EQ(Tolmen::RefererObjects, blocks);
}

TEST(StrongPtr, CanStayBehindInTheExtremeUnctionOfItsOwner)
{
    // The last handle is assigned anew from within the end of what it held.
    const RefPtr<Root> successor(new Root);
    auto* const root = new Root;
    RefPtr<Root> kept;
    root->whenEnding = [&, root] { kept = root; };
    root->whenDestroyed = [&] { EXPECT_FALSE(kept); };
    RefPtr<Root> owner(root);
    owner = successor;

    EXPECT_EQ(counts(kept), (Counts{-1, 1}));
    EXPECT_EQ(owner, successor);
    EXPECT_EQ(counts(successor), (Counts{2, 3}));
}

TEST(StrongPtr, IsNoHandleOfAnotherRoot)
{
    struct Stranger : Tolmen::ReferenceBase<Stranger>
    {
    };
    static_assert(!std::is_constructible_v<RefPtr<Root>, RefPtr<Stranger>>);
    static_assert(!std::is_assignable_v<RefPtr<Root>&, RefPtr<Stranger>>);
    static_assert(std::is_convertible_v<RefPtr<Root>, RefPtr<Left>>, "by a dynamic cast");
}

} // namespace
} // namespace QuorlTest
