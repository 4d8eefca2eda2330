#include <quorl/foundation/RefPtr.h>

#include <tests/foundation/HandleTestTypes.h>

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

namespace QuorlTest
{
namespace
{

constexpr int kThreads = 4;
constexpr int kRounds = 20000;

template <class Work>
void inThreads(Work&& work)
{
    std::vector<std::thread> threads;
    for (int i = 0; i < kThreads; ++i) threads.emplace_back([&work, i] { work(i); });
    for (std::thread& thread : threads) thread.join();
}

TEST(HandleThreads, CopyLockAndDropHandlesOfOneObject)
{
    const auto blocks = Tolmen::RefererObjects;
    {
        const RefPtr<Root> owner(new Left); // held throughout: so weak ones may be locked
        const WeakPtr<Root> weak(owner);
        inThreads([&](int) {
            for (int i = 0; i < kRounds; ++i)
            {
                const RefPtr<Root> copied(owner);
                const WeakPtr<Left> converted(copied);
                RefPtr<Left> locked(converted);
                EXPECT_EQ(locked->number, 1);
                locked = RefPtr<Left>();
                const RefPtr<Root> fromWeak(weak);
                locked = fromWeak;
                EXPECT_TRUE(locked);
            }
        });
        EXPECT_EQ(owner.referer->strong, 1);
        EXPECT_EQ(owner.referer->weak, 3);
    }
    EXPECT_EQ(Tolmen::RefererObjects, blocks);
}

TEST(HandleThreads, EndAnObjectExactlyOnceWhoeverDropsItLast)
{
    std::atomic<int> destroyed = 0;
    for (int round = 0; round < 2000; ++round)
    {
        auto* const root = new Root;
        root->whenDestroyed = [&] { ++destroyed; };
        RefPtr<Root> owner(root);
        std::vector<RefPtr<Root>> handles(kThreads, owner);
        owner = RefPtr<Root>();
        inThreads([&](int i) { handles[static_cast<std::size_t>(i)] = RefPtr<Root>(); });
    }

    EXPECT_EQ(destroyed, 2000);
}

TEST(HandleThreads, SeeWhatOwnersDidBeforeTheyDroppedTheirHandles)
{
    for (int round = 0; round < 1000; ++round)
    {
        auto* const left = new Left;
        int seen = 0;
        left->whenDestroyed = [&seen, left] { seen = left->unctions; };
        std::vector<RefPtr<Left>> handles(kThreads, RefPtr<Left>(left));
        inThreads([&](int i) { handles[static_cast<std::size_t>(i)] = RefPtr<Left>(); });
        EXPECT_EQ(seen, 1);
    }
}

TEST(HandleThreads, DropWeakHandlesOfTheDead)
{
    const auto blocks = Tolmen::RefererObjects;
    for (int round = 0; round < 1000; ++round)
    {
        std::vector<WeakPtr<Root>> handles;
        {
            const RefPtr<Root> owner(new Root);
            handles.assign(kThreads, WeakPtr<Root>(owner));
        }
        inThreads([&](int i) {
            EXPECT_FALSE(handles[static_cast<std::size_t>(i)]);
            handles[static_cast<std::size_t>(i)] = WeakPtr<Root>();
        });
    }

    EXPECT_EQ(Tolmen::RefererObjects, blocks);
}

TEST(HandleThreads, MakeAndEndObjectsOfTheirOwn)
{
    inThreads([](int) {
        for (int i = 0; i < kRounds / 10; ++i)
        {
            const RefPtr<Root> own(new Right);
            const RefPtr<Right> typed(own);
            EXPECT_EQ(typed->number, 2);
        }
    });
}

} // namespace
} // namespace QuorlTest
