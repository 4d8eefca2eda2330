#include <quorl/foundation/Counter.h>

#include <gtest/gtest.h>

#include <thread>
#include <vector>

namespace Tolmen
{
namespace
{

TEST(Counter, StartsAtZeroAndGoesBothWays)
{
    Counter counter;
    EXPECT_EQ(counter.value(), 0);
    EXPECT_EQ((++counter).value(), 1);
    EXPECT_EQ((--counter).value(), 0);
    EXPECT_EQ((--counter).value(), -1);
}

TEST(CounterThreads, IsSafeToChangeFromSeveralThreads)
{
    Counter counter;
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([&] {
            for (int i = 0; i < 10000; ++i)
            {
                ++counter;
                ++counter;
                --counter;
            }
        });
    for (std::thread& thread : threads) thread.join();

    EXPECT_EQ(counter.value(), 40000);
}

TEST(CounterScope, LowersTheCounterHoweverItEnds)
{
    Counter counter;
    try
    {
        const CounterScope scope(counter);
        EXPECT_EQ(counter.value(), 1);
        throw 1;
    }
    catch (int)
    {
        EXPECT_EQ(counter.value(), 0);
    }
}

} // namespace
} // namespace Tolmen
