#include <quorl/foundation/RefPtr.h>

#include <tests/foundation/HandleTestTypes.h>

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <random>
#include <thread>
#include <vector>

namespace QuorlTest
{
namespace
{

constexpr int kThreads = 4;
constexpr int kRounds = 20000;

/// Runs `work` with the numbers from 0, one thread each, all at once.
template <class Work>
void inThreads(Work&& work)
{
    std::atomic<int> ready = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < kThreads; ++i)
        threads.emplace_back([&work, &ready, i] {
            ++ready;
            while (ready < kThreads) std::this_thread::yield();
            work(static_cast<std::size_t>(i));
        });
    for (std::thread& thread : threads) thread.join();
}

TEST(HandleThreads, CopyLockAndDropHandlesOfOneObject)
{
    const auto blocks = Tolmen::RefererObjects;
    {
        const RefPtr<Root> owner(new Left); // held throughout: so weak ones may be locked
        const WeakPtr<Root> weak(owner);
        inThreads([&](std::size_t) {
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
        EXPECT_EQ(counts(owner), (Counts{1, 3}));
    }
    EXPECT_EQ(Tolmen::RefererObjects, blocks);
}

/// The handles of one thread.
struct Pockets
{
    std::array<RefPtr<Root>, 3> strong;
    std::array<WeakPtr<Root>, 3> weak;
    std::array<RefPtr<Left>, 3> left;
    std::array<WeakPtr<Right>, 3> right;
};

TEST(HandleThreads, ShuffleHandlesOfSeveralObjects)
{
    std::vector<RefPtr<Root>> owners;
    for (int i = 0; i < 6; ++i)
        owners.emplace_back(i % 2 == 0 ? static_cast<Root*>(new Left) : new Right);
    const auto objects = Tolmen::CheckRefcountedObjects;
    const auto blocks = Tolmen::RefererObjects;
    inThreads([&](std::size_t thread) {
        std::mt19937 random(static_cast<unsigned>(thread));
        const auto pick = [&](std::size_t count) {
            return std::uniform_int_distribution<std::size_t>(0, count - 1)(random);
        };
        Pockets mine;
        for (int i = 0; i < kRounds; ++i)
        {
            mine.strong[pick(3)] = owners[pick(owners.size())];
            mine.weak[pick(3)] = mine.strong[pick(3)];
            mine.left[pick(3)] = mine.weak[pick(3)];
            mine.right[pick(3)] = mine.left[pick(3)];
            mine.strong[pick(3)] = mine.right[pick(3)];
            const RefPtr<Right> right(mine.right[pick(3)]);
            if (right)
            {
                EXPECT_EQ(right->number, 2);
            }
            mine.weak[pick(3)] = WeakPtr<Root>();
        }
    });

    for (const RefPtr<Root>& owner : owners) EXPECT_EQ(counts(owner), (Counts{1, 2}));
    EXPECT_EQ(Tolmen::CheckRefcountedObjects, objects);
    EXPECT_EQ(Tolmen::RefererObjects, blocks);
}

TEST(HandleThreads, EndAnObjectExactlyOnceWhoeverDropsItLast)
{
    std::atomic<int> ended = 0;
    std::atomic<int> destroyed = 0;
    for (int round = 0; round < 2000; ++round)
    {
        auto* const root = new Root;
        root->whenEnding = [&] { ++ended; };
        root->whenDestroyed = [&] { ++destroyed; };
        RefPtr<Root> owner(root);
        std::vector<RefPtr<Root>> handles(kThreads, owner);
        owner = RefPtr<Root>();
        inThreads([&](std::size_t i) {
            const RefPtr<Root> copied(handles[i]);
            handles[i] = RefPtr<Root>();
        });
    }

    EXPECT_EQ(ended, 2000);
    EXPECT_EQ(destroyed, 2000);
}

TEST(HandleThreads, SeeInTheEndWhatOwnersDidBeforeTheyDroppedTheirHandles)
{
    struct Shared : Root
    {
        std::array<int, kThreads> written{}; // plain: only the handles give an order
    };
    for (int round = 0; round < 1000; ++round)
    {
        auto* const shared = new Shared;
        int sum = 0;
        shared->whenEnding = [&sum, shared] {
            for (const int number : shared->written) sum += number;
        };
        std::vector<RefPtr<Shared>> handles(kThreads, RefPtr<Shared>(shared));
        inThreads([&](std::size_t i) {
            handles[i]->written[i] = 1;
            handles[i] = RefPtr<Shared>();
        });
        EXPECT_EQ(sum, kThreads);
    }
}

TEST(HandleThreads, CopyAndDropWeakHandlesWhileTheObjectEnds)
{
    const auto blocks = Tolmen::RefererObjects;
    for (int round = 0; round < 1000; ++round)
    {
        RefPtr<Root> owner(new Left);
        std::vector<WeakPtr<Root>> weak(kThreads, owner);
        std::vector<WeakPtr<Left>> typed(kThreads, WeakPtr<Left>(owner));
        inThreads([&](std::size_t i) {
            if (i == 0) owner = RefPtr<Root>();
            const WeakPtr<Root> copied(weak[i]);
            const WeakPtr<Left> copiedTyped(typed[i]);
            weak[i] = WeakPtr<Root>();
            typed[i] = WeakPtr<Left>();
        });
    }
    EXPECT_EQ(Tolmen::RefererObjects, blocks);
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
        inThreads([&](std::size_t i) {
            EXPECT_FALSE(handles[i]);
            handles[i] = WeakPtr<Root>();
        });
    }

    EXPECT_EQ(Tolmen::RefererObjects, blocks);
}

// The tallies are not compared here: steps that two threads make at once can be lost.
TEST(HandleThreads, MakeAndEndObjectsOfTheirOwn)
{
    inThreads([](std::size_t) {
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
