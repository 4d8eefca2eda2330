#include <quorl/foundation/VGlobals.h>
#include <quorl/modules/VModules.h>
#include <quorl/registry/VInputCreatorBase.h>
#include <quorl/tasks/VCotask.h>
#include <tests/support/CapturedOutput.h>
#include <tests/support/Node.h>
#include <tests/support/TestTask.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <semaphore>
#include <string>
#include <thread>

/// The shipped module as a host sees it, which knows nothing of its classes.
namespace
{

using Quorl::RefPtr;
using Quorl::VTask;
using Quorl::VThreadCreator;
using QuorlTest::makeTask;
using QuorlTest::TestTask;

const std::string kModule = SHIPPED_MODULES "/threads.zelm";

struct LeaveItems final : Quorl::VManagedObject::VRemoveItem
{
    void removeItem(const std::string&, const RefPtr<Quorl::VManagedObject>&) override {}
};

bool unload()
{
    LeaveItems remover;
    return Quorl::UnloadVModule(kModule, remover);
}

/// The threads of this process; an ended one may be counted for a moment.
long threadsOfProcess()
{
    const auto tasks = std::filesystem::directory_iterator("/proc/self/task");
    return std::distance(begin(tasks), end(tasks));
}

/// Those that are there before any task. A first one may bring others of the run time's with it.
long threadsAtRest()
{
    std::thread([] {}).join();
    long least = threadsOfProcess();
    for (int attempt = 0; attempt < 20; ++attempt)
    {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
        least = std::min(least, threadsOfProcess());
    }
    return least;
}

bool comesDownTo(long threads)
{
    for (int attempt = 0; attempt < 2000; ++attempt)
    {
        if (threadsOfProcess() <= threads) return true;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return false;
}

long mappings(const std::string& part)
{
    std::ifstream maps("/proc/self/maps");
    long count = 0;
    for (std::string line; std::getline(maps, line);)
        if (line.find(part) != std::string::npos) ++count;
    return count;
}

struct ThreadsModule : testing::Test
{
    ~ThreadsModule() override
    {
        if (Quorl::VModules::find(kModule)) unload();
        ::unsetenv("ZELM_THREADS");
    }

    static Quorl::VThreadManager* loaded()
    {
        EXPECT_TRUE(Quorl::LoadVModule(kModule));
        return VThreadCreator::getThreadManager();
    }
};

TEST_F(ThreadsModule, BringsAManagerInAndTakesItAway)
{
    EXPECT_EQ(VThreadCreator::getThreadManager(), nullptr);
    Quorl::VThreadManager* const manager = loaded();
    ASSERT_NE(manager, nullptr);
    std::thread::id thread;
    const RefPtr<VTask> task = makeTask([&](TestTask&) { thread = std::this_thread::get_id(); });
    EXPECT_TRUE(manager->start(task));
    EXPECT_TRUE(manager->wait(task));
    EXPECT_NE(thread, std::this_thread::get_id());
    EXPECT_TRUE(unload());
    EXPECT_EQ(VThreadCreator::getThreadManager(), nullptr);
    EXPECT_EQ(mappings("threads.zelm"), 0);
}

TEST_F(ThreadsModule, LeavesNeitherThreadsNorMappingsBehind)
{
    constexpr int kRounds = 1000;
    const long threads = threadsAtRest();
    long settled = 0;
    for (int round = 0; round < kRounds; ++round)
    {
        Quorl::VThreadManager* const manager = loaded();
        std::atomic<int> runs = 0;
        for (int number = 0; number < 3; ++number)
            manager->start(makeTask([&](TestTask&) { ++runs; }));
        manager->waitForAll(100000);
        ASSERT_EQ(runs, 3);
        ASSERT_TRUE(unload());
        ASSERT_EQ(mappings("threads.zelm"), 0);
        if (round == 100) settled = mappings("");
    }
    EXPECT_TRUE(comesDownTo(threads));
    // A mapping left in each round would show. Stacks of threads are kept for the next ones, and a
    // sanitizer maps now and then for itself.
    EXPECT_LE(mappings(""), settled + kRounds / 10);
}

TEST_F(ThreadsModule, IsNotUnloadedWhileATaskRunsAndSaysSo)
{
    Quorl::VThreadManager* const manager = loaded();
    std::binary_semaphore begun(0);
    std::binary_semaphore go(0);
    std::atomic<bool> knewItself = false;
    const RefPtr<VTask> task = makeTask([&](TestTask& self) {
        begun.release();
        go.acquire();
        knewItself = VThreadCreator::CurrentThread() == Quorl::WeakPtr<VTask>(&self);
    });
    manager->start(task);
    begun.acquire();

    EXPECT_EQ(QuorlTest::errorOutputOf([] { EXPECT_TRUE(unload()); }),
              "Not unloaded: " + kModule + ", of which 1 tasks run. It leaves behind them.\n");

    EXPECT_TRUE(manager->isrunning(task));
    EXPECT_EQ(VThreadCreator::getThreadManager(), manager) << "tasks still find out who they are";
    go.release();
    manager->waitForAll(100000);
    EXPECT_TRUE(knewItself);
    EXPECT_GT(mappings("threads.zelm"), 0);

    EXPECT_NE(loaded(), nullptr) << "it has left, and comes anew";
    EXPECT_TRUE(unload());
    EXPECT_EQ(mappings("threads.zelm"), 0);
}

TEST_F(ThreadsModule, QuittingTheApplicationJoinsTheThreads)
{
    const long threads = threadsAtRest();
    Quorl::VThreadManager* const manager = loaded();
    std::atomic<bool> wasAsked = false;
    std::binary_semaphore begun(0);
    const RefPtr<VTask> task = makeTask([&](TestTask& self) {
        begun.release();
        while (self.inbox.wait())
        {
        }
        wasAsked = self.isToEnd();
    });
    manager->start(task);
    begun.acquire();
    EXPECT_GT(threadsOfProcess(), threads);

    Quorl::VGlobals::theGlobals().quit();

    EXPECT_TRUE(wasAsked);
    EXPECT_FALSE(manager->isrunning(task));
    EXPECT_TRUE(comesDownTo(threads));
    EXPECT_TRUE(unload());
    Quorl::VGlobals::theGlobals().quit();
}

TEST_F(ThreadsModule, RunsTasksOnTheStartersThreadIfThereMayBeNone)
{
    ::setenv("ZELM_THREADS", "0", 1);
    Quorl::VThreadManager* const manager = loaded();
    std::thread::id thread;
    EXPECT_TRUE(manager->start(makeTask([&](TestTask&) { thread = std::this_thread::get_id(); })));
    EXPECT_EQ(thread, std::this_thread::get_id());
}

TEST_F(ThreadsModule, HasAsManyThreadsAsThereMayBe)
{
    ::setenv("ZELM_THREADS", "2", 1);
    const long threads = threadsAtRest();
    Quorl::VThreadManager* const manager = loaded();
    std::counting_semaphore<> go(0);
    for (int number = 0; number < 5; ++number)
        manager->start(makeTask([&](TestTask&) { go.acquire(); }));
    EXPECT_EQ(threadsOfProcess(), threads + 2);
    go.release(5);
    manager->waitForAll(100000);
}

TEST_F(ThreadsModule, SaysThatANumberOfThreadsIsNone)
{
    for (const char* text : {"many", "-1", "2 or 3", "99999999999999999999999"})
    {
        ::setenv("ZELM_THREADS", text, 1);
        EXPECT_EQ(QuorlTest::errorOutputOf([] { EXPECT_NE(loaded(), nullptr); }),
                  "ZELM_THREADS is no number of threads: " + std::string(text) + "\n");
        unload();
    }
    ::setenv("ZELM_THREADS", "", 1);
    EXPECT_EQ(QuorlTest::errorOutputOf([] { EXPECT_NE(loaded(), nullptr); }), "");
}

TEST_F(ThreadsModule, TakesItsManagerFromObjectsWithTasks)
{
    for (const bool comesAnew : {false, true})
    {
        Quorl::VThreadManager* const manager = loaded();
        QuorlTest::Network network;
        const auto node = network.node("worker");
        Quorl::VCotask cotask(node.rawptr(), "tasks", 0);
        std::atomic<int> runs = 0;
        const RefPtr<TestTask> task = makeTask([&](TestTask&) { ++runs; });
        cotask.addTask(task, "counts");
        EXPECT_TRUE(cotask.run("counts"));
        EXPECT_TRUE(manager->wait(task));

        EXPECT_TRUE(unload());
        EXPECT_EQ(mappings("threads.zelm"), 0);
        const bool isThere = comesAnew && loaded();
        EXPECT_EQ(isThere, comesAnew);

        EXPECT_FALSE(cotask.run("counts"));
        EXPECT_FALSE(cotask.isrunning("counts"));
        EXPECT_FALSE(task->sendMessage(QuorlTest::makeMessage("hello")));
        EXPECT_EQ(runs, 1);
    }
}

#if !defined(__SANITIZE_ADDRESS__) // whose search for leaks fails where a thread ends the process
TEST_F(ThreadsModule, ATaskMayEndTheProcessWhileOthersWaitForIt)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            Quorl::VThreadManager* const manager = loaded();
            std::counting_semaphore<> begun(0);
            const RefPtr<VTask> ends = makeTask([&](TestTask&) {
                begun.acquire();
                begun.acquire();
                std::exit(7);
            });
            manager->start(ends);
            manager->start(makeTask([&](TestTask&) {
                begun.release();
                manager->wait(ends);
            }));
            begun.release();
            manager->wait(ends);
            std::binary_semaphore(0).acquire(); // the process ends meanwhile
        },
        testing::ExitedWithCode(7), testing::Eq(""));
}
#endif

TEST_F(ThreadsModule, ATaskWithoutAThreadMayEndTheProcess)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            ::setenv("ZELM_THREADS", "0", 1);
            loaded()->start(makeTask([](TestTask&) { std::exit(7); }));
        },
        testing::ExitedWithCode(7), testing::Eq(""));
}

TEST_F(ThreadsModule, TheProcessEndsWhileATaskRuns)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            Quorl::VThreadManager* const manager = loaded();
            std::binary_semaphore begun(0);
            manager->start(makeTask([&](TestTask& self) {
                begun.release();
                while (self.inbox.wait())
                {
                }
            }));
            begun.acquire();
            std::exit(0);
        },
        testing::ExitedWithCode(0), "");
}

} // namespace
