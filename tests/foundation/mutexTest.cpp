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
    int shared = 0;
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([&] {
            for (int i = 0; i < 1000; ++i)
            {
                const std::lock_guard<const mutex> outer(lock);
                const std::lock_guard<const mutex> inner(lock);
                ++shared;
            }
        });
    for (std::thread& thread : threads) thread.join();

    EXPECT_EQ(shared, 4000);
}

} // namespace
} // namespace Tolmen
