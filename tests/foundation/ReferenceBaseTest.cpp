#include <quorl/foundation/ReferenceBase.h>

#include <tests/foundation/HandleTestTypes.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <memory>

namespace QuorlTest
{
namespace
{

using Tolmen::CheckRefcountedObjects;
using Tolmen::RefererObjects;

TEST(ReferenceBase, NumbersObjectsFromOneForEachRoot)
{
    class First : public Tolmen::ReferenceBase<First>
    {
    };
    class Second : public Tolmen::ReferenceBase<Second>
    {
    };
    const First a;
    {
        const First lost;
    }
    const First b;
    const Second c;

    EXPECT_EQ(a.ID, 1);
    EXPECT_EQ(b.ID, 3) << "numbers are not used again";
    EXPECT_EQ(c.ID, 1);
    EXPECT_EQ(First::MaxObjectCountID, 4);
}

TEST(ReferenceBase, CountsDerivedClassesInOneSeries)
{
    const Left left;
    const Right right;

    EXPECT_EQ(right.ID, left.ID + 1);
}

TEST(ReferenceBase, GivesACopyABlockAndANumberOfItsOwn)
{
    const Root original;
    const Root copied(original);
    Root assigned;
    const auto number = assigned.ID;
    assigned = original;

    EXPECT_NE(copied.self.referer, original.self.referer);
    EXPECT_NE(copied.ID, original.ID);
    EXPECT_EQ(assigned.ID, number);
    EXPECT_NE(assigned.self.referer, original.self.referer);
}

TEST(ReferenceBase, IsBornWithItsOwnWeakShareAlone)
{
    const Root root;

    EXPECT_EQ(root.self.referer->strong, 0);
    EXPECT_EQ(root.self.referer->weak, 1);
    EXPECT_EQ(root.self.referer->object, static_cast<const Tolmen::ReferenceBase<Root>*>(&root));
    EXPECT_TRUE(root.self);
}

TEST(ReferenceBase, CountsBlocksAndObjects)
{
    const auto blocks = RefererObjects;
    const auto objects = CheckRefcountedObjects;
    {
        WeakPtr<Root> kept;
        {
            const Root root;
            kept = &root;
            EXPECT_EQ(RefererObjects, blocks + 1);
            EXPECT_EQ(CheckRefcountedObjects, objects + 1);
        }
        EXPECT_EQ(RefererObjects, blocks + 1) << "the block outlives the object";
        EXPECT_EQ(CheckRefcountedObjects, objects);
    }
    EXPECT_EQ(RefererObjects, blocks);
}

TEST(ReferenceBase, EndsOnTheStackWithItsWeakHandlesDeadButNotPoisoned)
{
    WeakPtr<Root> weak;
    const void* address = nullptr;
    {
        const Root root;
        weak = &root;
        address = static_cast<const Tolmen::ReferenceBase<Root>*>(&root);
        EXPECT_TRUE(weak);
    }

    EXPECT_FALSE(weak);
    EXPECT_EQ(weak.referer->strong, -1);
    EXPECT_EQ(weak.referer->object, address);
    EXPECT_EQ(weak.referer->weak, 1);
}

TEST(ReferenceBase, LeavesStrongHandlesDeadWhenItIsDeletedDirectly)
{
    auto* const root = new Root;
    RefPtr<Root> strong(root);
    const RefPtr<Root> other(strong);
    delete root;

    EXPECT_FALSE(strong);
    strong = RefPtr<Root>();
    EXPECT_EQ(other.referer->strong, -1) << "a drop does nothing";
}

TEST(ReferenceBase, CallsExtremeUnctionOnceWhileAliveAndThenDies)
{
    auto* const root = new Root;
    int destroyed = 0;
    std::int32_t strongThen = 0;
    RefPtr<Root> kept;
    WeakPtr<Root> weak(root);
    root->whenDestroyed = [&] { ++destroyed; };
    root->whenEnding = [&, root] {
        strongThen = weak.referer->strong;
        {
            const RefPtr<Root> inPassing(root);
            EXPECT_TRUE(inPassing);
            EXPECT_EQ(weak.referer->strong, 0x35000000 + 1);
        }
        EXPECT_EQ(root->unctions, 1);
        EXPECT_EQ(destroyed, 0);
        kept = root;
    };
    RefPtr<Root> owner(root);
    owner = RefPtr<Root>();

    EXPECT_EQ(strongThen, 0x35000000);
    EXPECT_EQ(destroyed, 1);
    EXPECT_FALSE(kept);
    EXPECT_EQ(kept.referer->strong, -1);
    EXPECT_EQ(kept.referer->object, reinterpret_cast<void*>(std::uintptr_t{0x1234}));
    EXPECT_FALSE(weak);
    kept = RefPtr<Root>();
    EXPECT_EQ(destroyed, 1);
}

TEST(ReferenceBase, IsDestroyedByAHandleInPassingIfNobodyOwnsIt)
{
    auto* const root = new Root;
    bool isDestroyed = false;
    root->whenDestroyed = [&] { isDestroyed = true; };
    {
        const RefPtr<Root> inPassing(root);
    }

    EXPECT_TRUE(isDestroyed);
}

TEST(ReferenceBase, CountsOnBehindTheLargestNumber)
{
    class Part : public Tolmen::ReferenceBase<Part>
    {
    };
    Part::MaxObjectCountID = std::numeric_limits<std::int32_t>::max();
    const Part last;
    const Part next;

    EXPECT_EQ(last.ID, std::numeric_limits<std::int32_t>::max());
    EXPECT_EQ(next.ID, std::numeric_limits<std::int32_t>::min());
}

TEST(ReferenceBase, HasHandlesOfOneWordForItsRoot)
{
    static_assert(sizeof(RefPtr<Root>) == sizeof(void*));
    static_assert(sizeof(WeakPtr<Root>) == sizeof(void*));
    static_assert(sizeof(RefPtr<Left>) == 2 * sizeof(void*));
}

} // namespace
} // namespace QuorlTest
