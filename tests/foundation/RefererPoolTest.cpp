#include <quorl/foundation/RefPtr.h>
#include <quorl/foundation/Referer.h>
#include <quorl/foundation/RefererPool.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <thread>
#include <vector>

namespace
{

using Tolmen::Referer;
namespace RefererPool = Tolmen::RefererPool;

std::vector<Referer*> takeBlocks(std::size_t count)
{
    std::vector<Referer*> blocks(count);
    std::ranges::generate(blocks, &RefererPool::take);
    return blocks;
}

void giveBackAll(const std::vector<Referer*>& blocks)
{
    std::ranges::for_each(blocks, &RefererPool::giveBack);
}

TEST(RefererPool, GivesFreshBlocksThatDiffer)
{
    const std::vector<Referer*> blocks = takeBlocks(10000);
    EXPECT_EQ(std::set(blocks.begin(), blocks.end()).size(), blocks.size());
    for (const Referer* const block : blocks)
    {
        EXPECT_EQ(block->strong, 0);
        EXPECT_EQ(block->weak, 0);
        EXPECT_EQ(block->object, nullptr);
    }
    giveBackAll(blocks);
}

TEST(RefererPool, GivesABlockThatWasUsedInItsInitialState)
{
    for (int round = 0; round < 3; ++round)
    {
        const std::vector<Referer*> blocks = takeBlocks(1000);
        for (Referer* const block : blocks)
        {
            EXPECT_EQ(block->strong, 0);
            EXPECT_EQ(block->weak, 0);
            EXPECT_EQ(block->object, nullptr);
            block->strong = Tolmen::kDead;
            block->weak = 7;
            block->object = Tolmen::poisonedObject();
        }
        giveBackAll(blocks);
    }
}

#if !defined(__SANITIZE_ADDRESS__) // which keeps what was given back, to tell its misuse

/// What one thread takes and another gives back must not pile up with the other.
TEST(RefererPool, ReusesWhatAnotherThreadGaveBack)
{
    std::set<const Referer*> seen;
    constexpr std::size_t kRounds = 50;
    constexpr std::size_t kBlocks = 4096;
    for (std::size_t round = 0; round < kRounds; ++round)
    {
        const std::vector<Referer*> blocks = takeBlocks(kBlocks);
        seen.insert(blocks.begin(), blocks.end());
        std::thread(giveBackAll, blocks).join();
    }
    EXPECT_LT(seen.size(), 2 * kBlocks);
}

TEST(RefererPool, ReusesTheOnlyBlockThatAThreadGaveBack)
{
    std::set<const Referer*> seen;
    constexpr int kThreads = 2000;
    for (int i = 0; i < kThreads; ++i)
    {
        Referer* const block = RefererPool::take();
        seen.insert(block);
        std::thread(&RefererPool::giveBack, block).join();
    }
    EXPECT_LT(seen.size(), kThreads / 2);
}

TEST(RefererPool, ReusesWhatAnEndedThreadHadLeft)
{
    std::set<const Referer*> seen;
    constexpr int kThreads = 200;
    for (int i = 0; i < kThreads; ++i)
        std::thread([&seen] {
            Referer* const block = RefererPool::take();
            seen.insert(block);
            RefererPool::giveBack(block);
        }).join();
    EXPECT_LT(seen.size(), kThreads / 2);
}

#endif

struct Thing : Tolmen::ReferenceBase<Thing>
{
};

/// Ends behind whatever the thread made later, the shelf of free blocks among it.
struct MakesHandlesAtTheEnd
{
    int* made = nullptr;
    ~MakesHandlesAtTheEnd()
    {
        for (; made && *made < 1000; ++*made)
        {
            const Tolmen::RefPtr<Thing> thing(new Thing);
            const Tolmen::WeakPtr<Thing> weak(thing);
        }
    }
};

TEST(RefererPool, ServesAThreadThatEnds)
{
    const std::int32_t before = Tolmen::RefererObjects;
    int made = 0;
    std::thread([&made] {
        thread_local MakesHandlesAtTheEnd maker;
        maker.made = &made;
        const Tolmen::RefPtr<Thing> thing(new Thing);
    }).join();
    EXPECT_EQ(made, 1000);
    EXPECT_EQ(Tolmen::RefererObjects, before);
}

} // namespace
