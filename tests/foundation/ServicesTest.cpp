#include <quorl/foundation/Cache.h>
#include <quorl/foundation/Counter.h>
#include <quorl/foundation/Exception.h>
#include <quorl/foundation/FileInfo.h>
#include <quorl/foundation/LastKnownSourceCodeLine.h>
#include <quorl/foundation/Profiler.h>
#include <quorl/foundation/Timer.h>
#include <quorl/foundation/mutex.h>

#include <gtest/gtest.h>

#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace Tolmen
{
namespace
{

TEST(Exception, KeepsItsTextInACopy)
{
    const Exception copied = Exception("what went wrong");
    const std::exception& base = copied;

    EXPECT_STREQ(base.what(), "what went wrong");
    EXPECT_STREQ(Exception().what(), "");
    EXPECT_NO_THROW(static_cast<void>(MemoryException()));
}

struct Data final : Cacheable
{
};

TEST(CacheOutOfMemory, SaysWhatCouldNotBeHeld)
{
    const RefPtr<Cacheable> data(new Data);
    try
    {
        throw Cache::OutOfMemory(data, "full");
    }
    catch (const Exception& error)
    {
        const auto& failure = dynamic_cast<const Cache::OutOfMemory&>(error);
        EXPECT_EQ(failure.object, data);
        EXPECT_STREQ(failure.what(), "full");
    }
    EXPECT_EQ(Cache::OutOfMemory().object.referer, nullptr);
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

TEST(Timer, GoesForward)
{
    const Timer timer;
    const double first = timer.seconds();

    EXPECT_GE(first, 0.0);
    EXPECT_GE(timer.seconds(), first);
}

struct Listener final : Profiler::Listener
{
    Listener() : before(Profiler::setListener(this)) {}
    ~Listener() override { Profiler::setListener(before); }
    void opened(const Profiler::Section& section) override
    {
        log += "(" + section.object + ":" + section.function + ":" + section.file +
               std::to_string(section.line) + std::to_string(section.detail);
    }
    void closed(const Profiler::Section& section, double seconds) override
    {
        EXPECT_GE(seconds, 0.0);
        log += section.object + ")";
    }
    Profiler::Listener* before;
    std::string log;
};

TEST(Profiler, TellsItsListenerOfNestedSections)
{
    Listener listener;
    {
        const Profiler outer("file", 1, "f", "outer", 0);
        const Profiler inner("file", 2, "g", "inner", 3);
    }
    EXPECT_EQ(listener.log, "(outer:f:file10(inner:g:file23inner)outer)");
}

TEST(Profiler, GoesOnWithTheListenerThatItBeganWith)
{
    Listener listener;
    {
        const Profiler section("file", 1, "f", "object", 0);
        Profiler::setListener(nullptr);
        const Profiler unheard("file", 2, "g", "unheard", 0);
    }
    EXPECT_EQ(listener.log, "(object:f:file10object)");
}

TEST(LastKnownSourceCodeLine, KeepsThePointerForEachThread)
{
    const char* const before = getLastKnownSourceCodeLine();
    const char* const here = "a.cpp:12";
    SetLastKnownSourceCodeLine(here);
    EXPECT_EQ(getLastKnownSourceCodeLine(), here);
    std::thread([] { EXPECT_EQ(getLastKnownSourceCodeLine(), nullptr); }).join();
    SetLastKnownSourceCodeLine(before);

    EXPECT_EQ(getLastKnownSourceCodeLine(), before);
}

TEST(FileInfo, TellsWhenAFileWasChanged)
{
    const auto path =
        std::filesystem::temp_directory_path() / ("quorl-file-info-" + std::to_string(::getpid()));
    EXPECT_TRUE(FileInfo(path.string()).invalid);
    EXPECT_TRUE(FileInfo().invalid);
    std::ofstream(path) << "x";
    const FileInfo first(path.string());
    EXPECT_FALSE(first.invalid);
    std::filesystem::last_write_time(path, std::filesystem::last_write_time(path) +
                                               std::chrono::nanoseconds(1000));
    const FileInfo second(path.string());
    std::filesystem::remove(path);

    EXPECT_TRUE(second.modified > first.modified);
    EXPECT_FALSE(first.modified > second.modified);
    EXPECT_FALSE(first.modified > first.modified);
}

TEST(Filetime, ComparesNanosecondsWithinASecond)
{
    Filetime early;
    early.seconds = 5;
    early.nanoseconds = 999999999;
    Filetime late;
    late.seconds = 6;

    EXPECT_TRUE(late > early);
    EXPECT_FALSE(early > late);
    late.seconds = 5;
    EXPECT_TRUE(early > late);
}

} // namespace
} // namespace Tolmen
