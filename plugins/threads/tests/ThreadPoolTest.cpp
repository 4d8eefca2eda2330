#include "../ThreadPool.h"

#include <quorl/kit/HostQueue.h>
#include <quorl/services/VLogger.h>
#include <tests/support/CapturedOutput.h>
#include <tests/support/TestTask.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <latch>
#include <limits>
#include <semaphore>
#include <set>
#include <stdexcept>
#include <thread>

/// Under the thread sanitizer, too.
namespace
{

using Quorl::RefPtr;
using Quorl::VTask;
using Quorl::WeakPtr;
using QuorlTest::makeMessage;
using QuorlTest::makeTask;
using QuorlTest::TestMessage;
using QuorlTest::TestTask;
using testing::ElementsAre;
using testing::HasSubstr;
using Threads::ThreadPool;

constexpr unsigned long kLong = 100000; // milliseconds; the end of a test that hangs

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

TEST(PoolThreads, AMessageSentBeforeAStartIsAlwaysSeen)
{
    ThreadPool pool;
    std::atomic<int> seen = 0;
    const RefPtr<VTask> task = makeTask([&](TestTask& self) {
        while (self.inbox.take()) ++seen;
    });
    for (int number = 0; number < 2000; ++number)
    {
        EXPECT_TRUE(pool.sendMessage(task, makeMessage("job")));
        EXPECT_TRUE(pool.start(task));
    }
    pool.wait(task);
    EXPECT_EQ(seen, 2000);
}

TEST(PoolThreads, MessagesArriveInTheirOrderAtATaskThatWaits)
{
    ThreadPool pool;
    std::vector<std::string> texts;
    const RefPtr<VTask> task = makeTask([&](TestTask& self) {
        while (texts.size() < 3)
        {
            const RefPtr<TestMessage> message = self.inbox.wait();
            texts.push_back(message->text);
        }
    });
    pool.start(task);
    for (const char* text : {"one", "two", "three"})
        EXPECT_TRUE(pool.sendMessage(task, makeMessage(text)));
    pool.wait(task);
    EXPECT_THAT(texts, ElementsAre("one", "two", "three"));
    EXPECT_FALSE(pool.sendMessage(task, {}));
}

TEST(PoolThreads, ATaskWithoutAnInboxGetsNoMessages)
{
    struct Deaf final : VTask
    {
        Deaf() : VTask({}) {}
        void run() override { ++runs; }
        int runs = 0;
    };
    ThreadPool pool;
    const RefPtr<Deaf> task(new Deaf);
    EXPECT_FALSE(pool.sendMessage(task, makeMessage("hello")));
    EXPECT_TRUE(pool.start(task));
    pool.wait(task);
    EXPECT_EQ(task->runs, 1);
}

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

TEST(PoolThreads, ResultsReachTheHostInItsOwnTurn)
{
    ThreadPool pool;
    std::vector<int> results;
    std::vector<std::thread::id> threads;
    std::vector<RefPtr<VTask>> tasks;
    tasks.reserve(8);
    for (int number = 0; number < 8; ++number)
        tasks.push_back(makeTask([&, number](TestTask& self) {
            self.deliver([&, number] {
                results.push_back(number);
                threads.push_back(std::this_thread::get_id());
            });
        }));
    for (const RefPtr<VTask>& task : tasks) pool.start(task);
    int drained = 0;
    while (drained < 8)
    {
        ASSERT_TRUE(Quorl::HostQueue::waitFor(std::chrono::milliseconds(kLong)));
        drained += Quorl::HostQueue::drain();
    }
    EXPECT_THAT(results, testing::UnorderedElementsAre(0, 1, 2, 3, 4, 5, 6, 7));
    EXPECT_THAT(threads, testing::Each(std::this_thread::get_id()));
    pool.waitForAll(kLong);
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

/// Notes who said what under which scope.
class Listener final : public Quorl::VLogger
{
public:
    void printmsg(const std::string& message, int level, int indent, const std::string& /*file*/,
                  unsigned int /*line*/, const WeakPtr<VTask>& thread,
                  const std::string& function) override
    {
        const std::scoped_lock lock(mutex);
        if (level != 1) return;
        lines.push_back(std::to_string(indent) + " " + function + " " + message);
        tasks.insert(thread);
    }
    std::mutex mutex;
    std::vector<std::string> lines;
    std::set<WeakPtr<VTask>> tasks;
};

TEST(PoolThreads, ScopesOfConcurrentTasksNeverMix)
{
    constexpr int kTasks = 8;
    constexpr int kRounds = 200;
    ThreadPool pool;
    const QuorlTest::TestThreads creator(pool);
    const RefPtr<Listener> listener(new Listener);
    ASSERT_TRUE(listener->activate());
    std::latch all(kTasks);
    std::vector<RefPtr<VTask>> tasks;
    tasks.reserve(kTasks);
    for (int number = 0; number < kTasks; ++number)
        tasks.push_back(makeTask([&, number](TestTask&) {
            all.arrive_and_wait();
            const std::string name = "task" + std::to_string(number);
            for (int round = 0; round < kRounds; ++round)
            {
                Quorl::VLogger::enter(name.c_str());
                Quorl::VLogger::print(1, name);
                Quorl::VLogger::enter((name + "inner").c_str());
                Quorl::VLogger::print(1, name);
                Quorl::VLogger::leave();
                Quorl::VLogger::leave();
            }
        }));
    for (const RefPtr<VTask>& task : tasks) pool.start(task);
    pool.waitForAll(kLong);

    std::map<std::string, int> counts;
    for (const std::string& line : listener->lines) ++counts[line];
    EXPECT_EQ(counts.size(), 2U * kTasks);
    for (int number = 0; number < kTasks; ++number)
    {
        const std::string name = "task" + std::to_string(number);
        const std::string outer = std::string("3 ").append(name).append(" ").append(name);
        const std::string inner = std::string("4 ").append(name).append("inner ").append(name);
        EXPECT_EQ(counts[outer], kRounds);
        EXPECT_EQ(counts[inner], kRounds);
    }
    EXPECT_EQ(listener->tasks.size(), static_cast<std::size_t>(kTasks));
    EXPECT_FALSE(listener->tasks.contains(WeakPtr<VTask>()));
}

// Without threads

TEST(PoolWithoutThreads, RunsATaskInsideOfStart)
{
    ThreadPool pool(0);
    bool wasRunning = false;
    WeakPtr<VTask> current;
    std::thread::id thread;
    const RefPtr<VTask> task = makeTask([&](TestTask& self) {
        thread = std::this_thread::get_id();
        wasRunning = pool.isrunning(&self);
        EXPECT_FALSE(pool.wait(&self));
        current = pool.CurrentThread();
    });
    EXPECT_TRUE(pool.start(task));
    EXPECT_EQ(thread, std::this_thread::get_id());
    EXPECT_TRUE(wasRunning);
    EXPECT_EQ(current, task);
    EXPECT_FALSE(pool.isrunning(task));
    EXPECT_EQ(pool.threads(), 0U);
    EXPECT_EQ(pool.CurrentThread().referer, nullptr);
}

TEST(PoolWithoutThreads, ATaskRunsInsideOfAnother)
{
    ThreadPool pool(0);
    std::vector<WeakPtr<VTask>> current;
    const RefPtr<VTask> inner =
        makeTask([&](TestTask&) { current.push_back(pool.CurrentThread()); });
    const RefPtr<VTask> outer = makeTask([&](TestTask&) {
        current.push_back(pool.CurrentThread());
        pool.start(inner);
        current.push_back(pool.CurrentThread());
    });
    pool.start(outer);
    EXPECT_THAT(current, ElementsAre(outer, inner, outer));
}

TEST(PoolWithoutThreads, ATaskThatStartsItselfRunsAgainBehindItself)
{
    ThreadPool pool(0);
    int runs = 0;
    const RefPtr<VTask> task = makeTask([&](TestTask& self) {
        if (++runs == 3) return;
        EXPECT_TRUE(pool.start(&self));
    });
    pool.start(task);
    EXPECT_EQ(runs, 3);
}

TEST(PoolWithoutThreads, WaitingForAMessageDoesNotWait)
{
    ThreadPool pool(0);
    int messages = 0;
    const RefPtr<VTask> task = makeTask([&](TestTask& self) {
        while (self.inbox.wait()) ++messages;
        EXPECT_FALSE(self.inbox.waitFor(std::chrono::hours(1)));
        EXPECT_FALSE(self.isToEnd());
    });
    pool.sendMessage(task, makeMessage("one"));
    pool.sendMessage(task, makeMessage("two"));
    pool.start(task);
    EXPECT_EQ(messages, 2);
}

TEST(PoolWithoutThreads, AnExceptionEndsTheTaskAndNotItsStarter)
{
    ThreadPool pool(0);
    const RefPtr<VTask> task = makeTask([](TestTask&) { throw std::logic_error("no such thing"); });
    EXPECT_EQ(QuorlTest::errorOutputOf([&] { EXPECT_TRUE(pool.start(task)); }),
              "A task ended by an exception: no such thing\n");
    EXPECT_EQ(pool.tasks(), 0U);
}

} // namespace
