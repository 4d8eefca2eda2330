#include "../ThreadPool.h"

#include "Patience.h"

#include <tests/support/TestTask.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <latch>
#include <limits>
#include <semaphore>
#include <set>
#include <thread>
#include <vector>

/// How tasks run, on how many threads, and are waited for. Under the thread sanitizer, too.
namespace
{

using Quorl::RefPtr;
using Quorl::VTask;
using Quorl::WeakPtr;
using QuorlTest::kLong;
using QuorlTest::makeMessage;
using QuorlTest::makeTask;
using QuorlTest::TestTask;
using Threads::ThreadPool;

TEST(PoolThreads, RunATaskOnAThreadOfItsOwn)
{
    ThreadPool pool;
    std::thread::id thread;
    const RefPtr<VTask> task = makeTask([&](TestTask&) { thread = std::this_thread::get_id(); });
    EXPECT_TRUE(pool.start(task));
    EXPECT_TRUE(pool.wait(task));
    EXPECT_NE(thread, std::thread::id());
    EXPECT_NE(thread, std::this_thread::get_id());
    EXPECT_FALSE(pool.isrunning(task));
}

TEST(PoolThreads, RefuseADeadTask)
{
    ThreadPool pool;
    EXPECT_FALSE(pool.start({}));
    EXPECT_FALSE(pool.wait({}));
    EXPECT_FALSE(pool.isrunning({}));
    EXPECT_FALSE(pool.sendMessage({}, makeMessage("hello")));
    EXPECT_EQ(pool.threads(), 0U);
}

TEST(PoolThreads, ATaskThatNeverRanNeedNotBeWaitedFor)
{
    ThreadPool pool;
    EXPECT_TRUE(pool.wait(makeTask()));
    pool.waitForAll(kLong);
}

TEST(PoolThreads, ATaskCannotWaitForItself)
{
    ThreadPool pool;
    bool waited = true;
    const RefPtr<VTask> task = makeTask([&](TestTask& self) { waited = pool.wait(&self); });
    pool.start(task);
    pool.wait(task);
    EXPECT_FALSE(waited);
}

TEST(PoolThreads, ATaskWaitsForAnotherOne)
{
    ThreadPool pool;
    int inner = 0;
    int seen = 0;
    const RefPtr<VTask> first = makeTask([&](TestTask&) { inner = 7; });
    const RefPtr<VTask> second = makeTask([&](TestTask&) {
        pool.start(first);
        EXPECT_TRUE(pool.wait(first));
        seen = inner;
    });
    pool.start(second);
    pool.wait(second);
    EXPECT_EQ(seen, 7);
}

TEST(PoolThreads, TellTheCurrentTask)
{
    ThreadPool pool;
    EXPECT_EQ(pool.CurrentThread().referer, nullptr);
    WeakPtr<VTask> current;
    const RefPtr<VTask> task = makeTask([&](TestTask&) { current = pool.CurrentThread(); });
    pool.start(task);
    pool.wait(task);
    EXPECT_EQ(current, task);
    EXPECT_EQ(pool.CurrentThread().referer, nullptr);
}

TEST(PoolThreads, SixtyFourTasksBlockAtOnce)
{
    constexpr int kTasks = 64;
    ThreadPool pool;
    std::latch all(kTasks);
    std::vector<RefPtr<VTask>> tasks;
    tasks.reserve(kTasks);
    for (int number = 0; number < kTasks; ++number)
        tasks.push_back(makeTask([&](TestTask&) { all.arrive_and_wait(); }));
    for (const RefPtr<VTask>& task : tasks) EXPECT_TRUE(pool.start(task));
    pool.waitForAll(kLong);
    EXPECT_EQ(pool.tasks(), 0U);
    EXPECT_EQ(pool.threads(), 64U);
}

TEST(PoolThreads, TenThousandShortTasksRunOnce)
{
    constexpr int kTasks = 10000;
    ThreadPool pool(8);
    std::atomic<int> runs = 0;
    for (int number = 0; number < kTasks; ++number)
        EXPECT_TRUE(pool.start(makeTask([&](TestTask&) { ++runs; })));
    pool.waitForAll(kLong);
    EXPECT_EQ(runs, kTasks);
    EXPECT_LE(pool.threads(), 8U);
}

TEST(PoolThreads, AThreadIsUsedAgain)
{
    ThreadPool pool;
    std::set<std::thread::id> threads;
    for (int number = 0; number < 100; ++number)
    {
        const RefPtr<VTask> task =
            makeTask([&](TestTask&) { threads.insert(std::this_thread::get_id()); });
        pool.start(task);
        pool.wait(task);
    }
    EXPECT_LE(pool.threads(), 2U) << "one may still be on its way back";
    EXPECT_EQ(threads.size(), pool.threads());
}

TEST(PoolThreads, NoMoreThanAllowedRunAtOnceAndTheOthersWait)
{
    ThreadPool pool(2);
    std::counting_semaphore<> go(0);
    std::atomic<int> running = 0;
    std::atomic<int> most = 0;
    std::vector<RefPtr<VTask>> tasks;
    tasks.reserve(10);
    for (int number = 0; number < 10; ++number)
        tasks.push_back(makeTask([&](TestTask&) {
            most = std::max(most.load(), ++running);
            go.acquire();
            --running;
        }));
    for (const RefPtr<VTask>& task : tasks) EXPECT_TRUE(pool.start(task));
    for (const RefPtr<VTask>& task : tasks) EXPECT_TRUE(pool.isrunning(task));
    EXPECT_EQ(pool.threads(), 2U);
    go.release(10);
    pool.waitForAll(kLong);
    EXPECT_LE(most, 2);
    EXPECT_EQ(running, 0);
}

TEST(PoolThreads, WaitingForAllEndsWithItsTime)
{
    ThreadPool pool;
    std::binary_semaphore go(0);
    const RefPtr<VTask> task = makeTask([&](TestTask&) { go.acquire(); });
    pool.start(task);
    pool.waitForAll(1);
    pool.waitForAll(0);
    EXPECT_TRUE(pool.isrunning(task));
    go.release();
    pool.waitForAll(std::numeric_limits<unsigned long>::max());
    EXPECT_FALSE(pool.isrunning(task));
}

TEST(PoolThreads, StartingARunningTaskRunsItOnceMore)
{
    ThreadPool pool;
    std::counting_semaphore<> go(0);
    std::atomic<int> runs = 0;
    const RefPtr<VTask> task = makeTask([&](TestTask&) {
        ++runs;
        go.acquire();
    });
    pool.start(task);
    while (runs == 0) std::this_thread::yield();
    EXPECT_TRUE(pool.start(task));
    EXPECT_TRUE(pool.start(task));
    go.release(2);
    pool.wait(task);
    EXPECT_EQ(runs, 2);
}

TEST(PoolThreads, HandlesOfTasksAreSharedByThreads)
{
    constexpr int kRounds = 500;
    ThreadPool pool;
    std::atomic<int> runs = 0;
    const RefPtr<VTask> shared = makeTask([&](TestTask&) { ++runs; });
    std::vector<RefPtr<VTask>> tasks;
    tasks.reserve(4);
    for (int number = 0; number < 4; ++number)
        tasks.push_back(makeTask([&](TestTask&) {
            for (int round = 0; round < kRounds; ++round)
            {
                pool.start(shared);
                pool.isrunning(shared);
                pool.wait(shared);
            }
        }));
    for (const RefPtr<VTask>& task : tasks) pool.start(task);
    pool.waitForAll(kLong);
    EXPECT_GE(runs, kRounds);
}

} // namespace
