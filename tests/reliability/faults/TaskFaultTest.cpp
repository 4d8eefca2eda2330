#include <plugins/threads/ThreadPool.h>
#include <tests/reliability/faults/FailingMemory.h>
#include <tests/support/TestTask.h>

#include <gtest/gtest.h>

#include <atomic>
#include <optional>
#include <thread>
#include <vector>

/// Tasks, where memory runs out: each runs, or can be started once more.
namespace
{

using Quorl::RefPtr;
using QuorlTest::FailingMemory;
using QuorlTest::makeTask;
using QuorlTest::runWithFailure;
using QuorlTest::TestTask;
using Threads::ThreadPool;

/// \param mostThreads as for the pool.
void startWithEachFailure(std::optional<std::size_t> mostThreads, FailingMemory::Extent extent)
{
    long failures = 0;
    for (bool hasFailed = true; hasFailed; failures += hasFailed ? 1 : 0)
    {
        SCOPED_TRACE(failures + 1);
        ThreadPool pool(mostThreads);
        std::atomic<int> runs = 0;
        const RefPtr<TestTask> task = makeTask([&](TestTask&) { ++runs; });
        bool isStarted = false;
        hasFailed = runWithFailure([&] { isStarted = pool.start(task); }, failures + 1, extent);
        pool.wait(task);
        EXPECT_EQ(runs, isStarted ? 1 : 0);

        EXPECT_TRUE(pool.start(task));
        EXPECT_TRUE(pool.wait(task));
        EXPECT_EQ(runs, isStarted ? 2 : 1);
        EXPECT_EQ(pool.tasks(), 0U);
        if (testing::Test::HasFailure()) return;
    }
    EXPECT_GT(failures, 0);
}

TEST(TaskFaultsThreads, ATaskThatIsNotStartedCanBeStartedOnceMore)
{
    for (const auto extent : {FailingMemory::Once, FailingMemory::FromThenOn})
    {
        startWithEachFailure({}, extent);
        startWithEachFailure(0, extent);
    }
}

/// A body after which there is no memory any more, until it is given back.
struct Exhausting
{
    void run()
    {
        memory.emplace(1, FailingMemory::FromThenOn);
        const std::vector<int> unattainable(100);
    }

    std::optional<FailingMemory> memory;
};

TEST(TaskFaultsThreads, ATaskMayRunOutOfMemoryWithoutAnythingLeftToSaySo)
{
    for (const auto mostThreads : {std::optional<std::size_t>(), std::optional<std::size_t>(0)})
    {
        ThreadPool pool(mostThreads);
        Exhausting body;
        const RefPtr<TestTask> task = makeTask([&](TestTask&) { body.run(); });
        EXPECT_TRUE(pool.start(task));
        EXPECT_TRUE(pool.wait(task));
        ASSERT_TRUE(body.memory && body.memory->hasFailed());
        body.memory.reset();
        EXPECT_FALSE(pool.isrunning(task));
    }
}

TEST(TaskFaultsThreads, ThePoolEndsItsTasksWithoutMemory)
{
    ThreadPool pool(1);
    std::atomic<bool> isRunning = false;
    const RefPtr<TestTask> running = makeTask([&](TestTask& task) {
        isRunning = true;
        while (!task.isToEnd()) std::this_thread::yield();
    });
    std::atomic<int> runs = 0;
    const RefPtr<TestTask> waiting = makeTask([&](TestTask&) { ++runs; });
    pool.start(running);
    while (!isRunning) std::this_thread::yield();
    pool.start(waiting);
    {
        const FailingMemory memory(1, FailingMemory::FromThenOn);
        EXPECT_NO_THROW(pool.finish());
    }
    EXPECT_EQ(pool.tasks(), 0U);
    EXPECT_EQ(runs, 0);

    EXPECT_TRUE(pool.start(waiting));
    EXPECT_TRUE(pool.wait(waiting));
    EXPECT_EQ(runs, 1);
}

} // namespace
