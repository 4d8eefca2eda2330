#include "../ThreadPool.h"

#include "Patience.h"

#include <tests/support/CapturedOutput.h>
#include <tests/support/TestTask.h>

#include <gtest/gtest.h>

#include <atomic>
#include <semaphore>
#include <stdexcept>
#include <string>
#include <thread>

/// How tasks end, and the pool itself. Under the thread sanitizer, too.
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

TEST(PoolThreads, TheLastHandleMayGoInTheTaskAndOnItsThread)
{
    ThreadPool pool;
    std::atomic<bool> isGone = false;
    std::binary_semaphore go(0);
    WeakPtr<VTask> watched;
    {
        RefPtr<TestTask> task = makeTask([&](TestTask&) { go.acquire(); });
        task->whenDestroyed = [&] { isGone = true; };
        watched = task;
        pool.start(task);
    }
    EXPECT_TRUE(watched) << "the thread keeps it";
    go.release();
    pool.waitForAll(kLong);
    EXPECT_TRUE(isGone);
    EXPECT_FALSE(watched);
}

TEST(PoolThreads, ATasksDestructorMayUseThePool)
{
    ThreadPool pool;
    std::atomic<int> runs = 0;
    {
        const RefPtr<TestTask> task = makeTask();
        task->whenDestroyed = [&] { pool.start(makeTask([&](TestTask&) { ++runs; })); };
        pool.start(task);
    }
    while (runs == 0) pool.waitForAll(10);
    pool.waitForAll(kLong);
    EXPECT_EQ(runs, 1);
}

TEST(PoolThreads, AnExceptionEndsItsTaskAlone)
{
    ThreadPool pool;
    int runs = 0;
    const RefPtr<VTask> task = makeTask([&](TestTask&) {
        if (++runs == 1) throw std::runtime_error("the disk is full");
        if (runs == 2) throw 5;
    });
    const std::string said = QuorlTest::errorOutputOf([&] {
        for (int number = 0; number < 3; ++number)
        {
            EXPECT_TRUE(pool.start(task));
            EXPECT_TRUE(pool.wait(task));
        }
    });
    EXPECT_EQ(said, "A task ended by an exception: the disk is full\n"
                    "A task ended by an exception.\n");
    EXPECT_EQ(runs, 3);
}

TEST(PoolThreads, FinishingAsksTasksToEndAndForgetsThoseThatWait)
{
    ThreadPool pool(1);
    std::atomic<bool> isWaiting = false;
    bool wasClosed = false;
    const RefPtr<VTask> first = makeTask([&](TestTask& self) {
        isWaiting = true;
        while (self.inbox.wait())
        {
        }
        wasClosed = self.isToEnd();
    });
    const RefPtr<VTask> second =
        makeTask([](TestTask&) { ADD_FAILURE() << "it never had a turn"; });
    pool.start(first);
    while (!isWaiting) std::this_thread::yield();
    pool.start(second);
    pool.finish();
    EXPECT_TRUE(wasClosed);
    EXPECT_EQ(pool.tasks(), 0U);
    EXPECT_EQ(pool.threads(), 0U);

    isWaiting = false;
    EXPECT_TRUE(pool.start(first)) << "it is open again";
    pool.sendMessage(first, makeMessage("end"));
    while (!isWaiting) std::this_thread::yield();
    pool.finish();
    pool.finish();
}

TEST(PoolThreads, FinishingReleasesATaskThatWaitsForOneThatIsForgotten)
{
    for (int round = 0; round < 20; ++round)
    {
        ThreadPool pool(1);
        std::binary_semaphore go(0);
        std::atomic<bool> isWaiting = false;
        bool wasReleased = false;
        const RefPtr<VTask> second = makeTask();
        const RefPtr<VTask> first = makeTask([&](TestTask&) {
            go.acquire();
            isWaiting = true;
            wasReleased = pool.wait(second);
        });
        pool.start(first);
        pool.start(second);
        go.release();
        while (!isWaiting) std::this_thread::yield();
        for (int turn = 0; turn < 100; ++turn) std::this_thread::yield(); // it is all but there
        pool.finish();
        EXPECT_TRUE(wasReleased);
    }
}

TEST(PoolThreads, AnyTaskMayAskThemToFinish)
{
    ThreadPool pool;
    const RefPtr<VTask> task = makeTask([&](TestTask& self) {
        pool.finish();
        EXPECT_TRUE(self.isToEnd());
    });
    pool.start(task);
    pool.wait(task);
    EXPECT_EQ(pool.threads(), 1U);
}

TEST(PoolThreads, TheEndOfThePoolAsksItsTasksToEndAndWaitsForThem)
{
    std::binary_semaphore begun(0);
    std::atomic<bool> isDone = false;
    {
        ThreadPool pool;
        pool.start(makeTask([&](TestTask& self) {
            begun.release();
            while (!self.isToEnd()) std::this_thread::yield();
            isDone = true;
        }));
        begun.acquire();
    }
    EXPECT_TRUE(isDone);
}

} // namespace
