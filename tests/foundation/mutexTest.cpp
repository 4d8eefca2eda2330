#include <quorl/foundation/mutex.h>

#include <gtest/gtest.h>

#include <mutex>
#include <thread>
#include <vector>

namespace Tolmen
{
namespace
{

TEST(mutexThreads, ExcludesOthersButNotItsOwner)
{
    const mutex lock;
    constexpr int kTimes = 20'000; // for all ways of meeting
    int shared = 0;
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([&] {
            for (int i = 0; i < kTimes; ++i)
            {
                const std::lock_guard<const mutex> outer(lock);
                const std::lock_guard<const mutex> inner(lock);
                ++shared;
                if (i % 16 == 0) std::this_thread::yield();
            }
        });
    for (std::thread& thread : threads) thread.join();

    EXPECT_EQ(shared, 4 * kTimes);
}

} // namespace
} // namespace Tolmen
