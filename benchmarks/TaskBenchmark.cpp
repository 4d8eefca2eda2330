#include <plugins/threads/ThreadPool.h>
#include <quorl/tasks/VTask.h>

#include <benchmark/benchmark.h>

#include <atomic>
#include <cstdint>
#include <limits>
#include <thread>
#include <vector>

/// Short tasks on the threads of the shipped module, beside threads that are made for each.
namespace QuorlBenchmark
{
namespace
{

using Quorl::RefPtr;

constexpr int kTasks = 1000;
constexpr unsigned long kForever = std::numeric_limits<unsigned long>::max();

class CountingTask final : public Quorl::VTask
{
public:
    explicit CountingTask(std::atomic<std::int64_t>& runs) : VTask({}), runs_(runs) {}
    void run() override { ++runs_; }

private:
    std::atomic<std::int64_t>& runs_;
};

void check(benchmark::State& state, std::int64_t runs, std::int64_t wanted)
{
    if (runs != wanted) state.SkipWithError("tasks were lost");
    state.SetItemsProcessed(wanted);
}

void BM_StartAndWait(benchmark::State& state)
{
    Threads::ThreadPool pool;
    std::atomic<std::int64_t> runs = 0;
    const RefPtr<Quorl::VTask> task(new CountingTask(runs));
    for (auto _ : state)
    {
        pool.start(task);
        pool.wait(task);
    }
    check(state, runs, state.iterations());
}

void BM_ThreadAndJoin(benchmark::State& state)
{
    std::atomic<std::int64_t> runs = 0;
    for (auto _ : state) std::jthread([&] { ++runs; }).join();
    check(state, runs, state.iterations());
}

void BM_ManyTasks(benchmark::State& state)
{
    Threads::ThreadPool pool(std::thread::hardware_concurrency());
    std::atomic<std::int64_t> runs = 0;
    for (auto _ : state)
    {
        for (int number = 0; number < kTasks; ++number)
            pool.start(RefPtr<Quorl::VTask>(new CountingTask(runs)));
        pool.waitForAll(kForever);
    }
    check(state, runs, state.iterations() * kTasks);
}

void BM_ManyThreads(benchmark::State& state)
{
    std::atomic<std::int64_t> runs = 0;
    for (auto _ : state)
    {
        std::vector<std::jthread> threads;
        for (int number = 0; number < kTasks; ++number) threads.emplace_back([&] { ++runs; });
    }
    check(state, runs, state.iterations() * kTasks);
}

BENCHMARK(BM_StartAndWait)->Name("task start and wait/ours")->UseRealTime();
BENCHMARK(BM_ThreadAndJoin)->Name("task start and wait/new thread")->UseRealTime();
BENCHMARK(BM_ManyTasks)->Name("task 1000 at once/ours")->UseRealTime();
BENCHMARK(BM_ManyThreads)->Name("task 1000 at once/new threads")->UseRealTime();

} // namespace
} // namespace QuorlBenchmark
