#include <quorl/foundation/ManyShares.h>

#include <tests/foundation/HandleTestTypes.h>

#include <gtest/gtest.h>

#include <array>
#include <cstdint>

namespace
{

using QuorlTest::Root;
using Tolmen::ManyShares;
using Tolmen::RefPtr;
using Tolmen::WeakPtr;

using Handles = std::array<RefPtr<Root>, 3>;

void putIntoAll(Handles& handles, const RefPtr<Root>& object)
{
    ManyShares<Root> shares(object, static_cast<std::int32_t>(handles.size()));
    for (RefPtr<Root>& handle : handles) shares.put(handle);
}

TEST(ManyShares, GivesEachHandleAShareOfItsOwn)
{
    const RefPtr<Root> object(new Root);
    Handles handles;

    putIntoAll(handles, object);

    for (const RefPtr<Root>& handle : handles) EXPECT_EQ(handle, object);
    EXPECT_EQ(object.referer->strong, 4);
    EXPECT_EQ(object.referer->weak, 5);
}

TEST(ManyShares, TakesBackThoseThatNoHandleWasGiven)
{
    const RefPtr<Root> object(new Root);
    RefPtr<Root> handle;
    {
        ManyShares<Root> shares(object, 3);
        shares.put(handle);
    }

    EXPECT_EQ(object.referer->strong, 2);
    EXPECT_EQ(object.referer->weak, 3);
}

TEST(ManyShares, EndsWhatTheHandlesHeldWithTheLastOfThem)
{
    Handles handles;
    handles.fill(RefPtr<Root>(new Root));
    const WeakPtr<Root> former = handles.front();
    RefPtr<Root> next;
    const RefPtr<Root> object(new Root);
    {
        ManyShares<Root> shares(object, 3);
        shares.put(handles[0]);
        shares.put(handles[1]);
        shares.push(handles[2], next);
    }

    EXPECT_EQ(next, former);
    EXPECT_EQ(former.referer->strong, 1);
    next = RefPtr<Root>();
    EXPECT_FALSE(former);
}

TEST(ManyShares, EndsNothingBeforeAllHandlesArePut)
{
    Handles handles;
    const RefPtr<Root> object(new Root);
    int ended = 0;
    for (RefPtr<Root>& handle : handles)
    {
        handle = RefPtr<Root>(new Root);
        handle->whenDestroyed = [&] {
            ++ended;
            for (const RefPtr<Root>& each : handles) EXPECT_EQ(each, object);
        };
    }

    putIntoAll(handles, object);

    EXPECT_EQ(ended, 3);
}

TEST(ManyShares, GivesBackTheCountBlockOfWhatIsDead)
{
    const RefPtr<Root> object(new Root);
    const std::int32_t before = Tolmen::RefererObjects;
    auto* const mortal = new Root;
    Handles handles;
    handles.fill(RefPtr<Root>(mortal));
    delete mortal; // past its handles
    ASSERT_EQ(Tolmen::RefererObjects, before + 1);

    putIntoAll(handles, object);

    EXPECT_EQ(Tolmen::RefererObjects, before);
}

} // namespace
