#include "../ThreadPool.h"

#include "Patience.h"

#include <quorl/kit/HostQueue.h>
#include <quorl/services/VLogger.h>
#include <tests/support/TestTask.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <latch>
#include <map>
#include <mutex>
#include <set>
#include <string>
#include <thread>
#include <vector>

/// What tasks are told, and what they tell: messages, results and lines of the log. Under the
/// thread sanitizer, too.
namespace
{

using Quorl::RefPtr;
using Quorl::VTask;
using Quorl::WeakPtr;
using QuorlTest::kLong;
using QuorlTest::makeMessage;
using QuorlTest::makeTask;
using QuorlTest::TestMessage;
using QuorlTest::TestTask;
using testing::ElementsAre;
using Threads::ThreadPool;

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

} // namespace
