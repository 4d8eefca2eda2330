#include "../ThreadPool.h"

#include <tests/support/CapturedOutput.h>
#include <tests/support/TestTask.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <stdexcept>
#include <thread>
#include <vector>

/// A pool that has no threads: its tasks run inside of their starts.
namespace
{

using Quorl::RefPtr;
using Quorl::VTask;
using Quorl::WeakPtr;
using QuorlTest::makeMessage;
using QuorlTest::makeTask;
using QuorlTest::TestTask;
using testing::ElementsAre;
using Threads::ThreadPool;

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
