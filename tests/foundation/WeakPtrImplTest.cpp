#include <quorl/foundation/WeakPtrImpl.h>

#include <tests/foundation/HandleTestTypes.h>

#include <gtest/gtest.h>

#include <new>

namespace QuorlTest
{
namespace
{

TEST(WeakPtrImpl, HoldsTheBlockAndNotTheObject)
{
    const auto blocks = Tolmen::RefererObjects;
    {
        WeakPtr<Root> weak;
        {
            const RefPtr<Root> owner(new Root);
            weak = owner;
            EXPECT_EQ(counts(owner), (Counts{1, 3}));
        }
        EXPECT_FALSE(weak);
        EXPECT_EQ(counts(weak), (Counts{-1, 1}));
        EXPECT_EQ(Tolmen::RefererObjects, blocks + 1);
    }
    EXPECT_EQ(Tolmen::RefererObjects, blocks);
}

TEST(WeakPtrImpl, IsAliveForAnObjectThatNobodyOwns)
{
    Left onTheStack;
    const WeakPtr<Root> root(&onTheStack);
    const WeakPtr<Left> left(root);

    EXPECT_TRUE(root);
    EXPECT_EQ(left.rawptr(), &onTheStack);
    EXPECT_EQ(counts(root), (Counts{0, 3}));
}

TEST(WeakPtrImpl, ChangesNothingWhenAssignedItselfOrTheSameBlock)
{
    const RefPtr<Root> owner(new Left);
    WeakPtr<Root> weak(owner);
    const WeakPtr<Left> typed(owner);
    const Counts before = counts(owner);
    const WeakPtr<Root>& itself = weak;
    weak = itself;
    weak = owner;
    weak = typed;

    EXPECT_EQ(counts(owner), before);
}

TEST(WeakPtrImpl, KeepsItsOwnViewWhenAssignedTheSameBlock)
{
    WeakPtr<LateMade> early;
    const LateMade object([&](Root* root) { early = WeakPtr<Root>(root); });
    early = WeakPtr<Root>(&object);

    EXPECT_FALSE(early) << "nothing happens at all, so the cast is not tried again";
}

TEST(WeakPtrImpl, MovesItsShareWhenAssignedAnotherBlock)
{
    const RefPtr<Root> first(new Root);
    const RefPtr<Root> second(new Root);
    WeakPtr<Root> weak(first);
    weak = second;

    EXPECT_EQ(counts(first), (Counts{1, 2}));
    EXPECT_EQ(counts(second), (Counts{1, 3}));
    weak = WeakPtr<Root>();
    EXPECT_EQ(counts(second), (Counts{1, 2}));
}

TEST(WeakPtrImpl, FreesTheBlockOfADeadObjectWhenAssignedAnother)
{
    const auto blocks = Tolmen::RefererObjects;
    WeakPtr<Root> weak;
    {
        const Root root;
        weak = &root;
    }
    EXPECT_EQ(Tolmen::RefererObjects, blocks + 1);
    weak = WeakPtr<Root>();

    EXPECT_EQ(Tolmen::RefererObjects, blocks);
    EXPECT_EQ(weak.referer, nullptr);
}

TEST(WeakPtrImpl, GivesTheObjectAsAnotherType)
{
    const RefPtr<Root> root(new Left);
    const RefPtr<Left> left(root);
    const WeakPtr<Left> weak(root);

    EXPECT_EQ(left->number, 1);
    EXPECT_EQ((*weak).number, 1);
    EXPECT_EQ(left.rawptr(), root.rawptr());
    EXPECT_EQ(static_cast<void*>(left), left.rawptr());
    EXPECT_EQ(counts(root), (Counts{2, 4}));
}

TEST(WeakPtrImpl, IsNotAliveWhereTheCastFailsButHoldsTheBlock)
{
    const RefPtr<Root> root(new Left);
    const WeakPtr<Right> failed(root);

    EXPECT_TRUE(!failed);
    EXPECT_EQ(static_cast<void*>(failed), nullptr);
    EXPECT_NE(root.rawptr(), nullptr);
    EXPECT_TRUE(root);
    EXPECT_EQ(failed, root);
    EXPECT_EQ(failed.rawptr(), nullptr);
    EXPECT_EQ(counts(root), (Counts{1, 3}));
    const WeakPtr<Left> onwards(failed);
    EXPECT_TRUE(onwards) << "the block is asked, not the failed handle";
}

TEST(WeakPtrImpl, IsNotAliveForADeadObject)
{
    WeakPtr<Root> dead;
    {
        const RefPtr<Root> owner(new Left);
        dead = owner;
    }
    const WeakPtr<Left> left(dead);

    EXPECT_TRUE(!left);
    EXPECT_EQ(left, dead);
    EXPECT_EQ(counts(dead), (Counts{-1, 2}));
}

TEST(WeakPtrImpl, ConvertsAnewWhenItIsAssigned)
{
    const RefPtr<Root> left(new Left);
    const RefPtr<Root> right(new Right);
    WeakPtr<Left> handle;
    handle = left;
    EXPECT_TRUE(handle);
    handle = right;
    EXPECT_FALSE(handle);
    EXPECT_EQ(handle, right);
    handle = left;
    EXPECT_TRUE(handle);
}

/// The root of its handles lies on the other side of a virtual base.
struct Named : virtual Root
{
};
struct Placed : virtual Root
{
};
struct Both final : Named, Placed
{
};

TEST(WeakPtrImpl, ConvertsAcrossVirtualBases)
{
    const RefPtr<Both> both(new Both);
    const RefPtr<Root> root(both);
    const RefPtr<Named> named(root);
    const RefPtr<Placed> placed(named);

    EXPECT_EQ(named.rawptr(), static_cast<Named*>(both.rawptr()));
    EXPECT_EQ(placed.rawptr(), static_cast<Placed*>(both.rawptr()));
    EXPECT_EQ(counts(root), (Counts{4, 5}));
}

TEST(WeakPtrImpl, IsLeftDeadByAConstructorThatThrows)
{
    struct Failing : Root
    {
        explicit Failing(WeakPtr<Root>& handle)
        {
            handle = this;
            throw 1;
        }
    };
    const auto objects = Tolmen::CheckRefcountedObjects;
    WeakPtr<Root> weak;
    EXPECT_THROW(Failing{weak}, int);

    EXPECT_FALSE(weak);
    EXPECT_EQ(counts(weak), (Counts{-1, 1}));
    EXPECT_EQ(Tolmen::CheckRefcountedObjects, objects);
}

TEST(WeakPtrImpl, ReportsThatItIsConstructedFromItself)
{
    Speaker speaker;
    alignas(RefPtr<Root>) static unsigned char storage[sizeof(RefPtr<Root>)];
    auto* const place = reinterpret_cast<RefPtr<Root>*>(storage);
    auto* const handle = new (storage) RefPtr<Root>(*place);

    EXPECT_EQ(speaker.reports, std::vector<std::string>{"self"});
    EXPECT_TRUE(!*handle);
    handle->~StrongPtr();
}

} // namespace
} // namespace QuorlTest
