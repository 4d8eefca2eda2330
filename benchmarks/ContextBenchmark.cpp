#include <benchmarks/MemoryUse.h>
#include <benchmarks/ObjectNetwork.h>
#include <benchmarks/Topology.h>

#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <vector>

/// One network of 10,000 objects, evaluated in 1, 10 or 100 contexts side by side. Five of its
/// hundred chains begin with a value that each context has for itself, and so differ, with the
/// sink.

namespace QuorlBenchmark
{
namespace
{

using Quorl::RefPtr;
using Quorl::ValuePool;

constexpr std::size_t kChains = 100;
constexpr std::size_t kLength = 100;
constexpr std::size_t kChainsOfContexts = 5;

class Contexts
{
public:
    Contexts() : network(Topology::chains(kChains, kLength), Quorl::perContext())
    {
        for (std::size_t chain = 0; chain < kChainsOfContexts; ++chain)
            network.localizeInput(chain * kLength);
    }

    /// Contexts that nothing was asked in yet, each with values of its own.
    void open(std::int64_t count)
    {
        for (std::int64_t number = 0; number < count; ++number)
        {
            pools.emplace_back(new ValuePool);
            setLeaves(pools.back(), static_cast<double>(number));
        }
    }

    void reopen(std::int64_t count)
    {
        pools.clear();
        open(count);
    }

    /// Opens contexts in which everything is computed and prepared.
    void settle(std::int64_t count)
    {
        open(count);
        requestAll();
        requestAll();
    }

    void setLeaves(const RefPtr<ValuePool>& pool, double datum)
    {
        for (std::size_t chain = 0; chain < kChainsOfContexts; ++chain)
            network.setInput(chain * kLength, pool, datum);
    }

    void requestAll()
    {
        for (const RefPtr<ValuePool>& pool : pools) network.request(pool);
    }

    /// \return whether each context has the sum that its own values make.
    bool isRight()
    {
        for (std::size_t number = 0; number < pools.size(); ++number)
            if (network.result(pools[number]) !=
                static_cast<double>(kChains * kLength + 1 + kChainsOfContexts * number))
                return false;
        return true;
    }

    ObjectNetwork network;
    std::vector<RefPtr<ValuePool>> pools;
};

void BM_FirstRequests(benchmark::State& state)
{
    Contexts contexts;
    for (auto _ : state)
    {
        state.PauseTiming();
        contexts.reopen(state.range(0));
        state.ResumeTiming();
        contexts.requestAll();
    }
    if (!contexts.isRight()) state.SkipWithError("contexts were mixed");
}

/// Which find nothing to do, and may prepare those behind them.
void BM_SecondRequests(benchmark::State& state)
{
    Contexts contexts;
    for (auto _ : state)
    {
        state.PauseTiming();
        contexts.reopen(state.range(0));
        contexts.requestAll();
        const std::int64_t updates = contexts.network.updates();
        state.ResumeTiming();
        contexts.requestAll();
        if (contexts.network.updates() != updates)
            state.SkipWithError("an unchanged context was updated");
    }
    if (!contexts.isRight()) state.SkipWithError("contexts were mixed");
}

void BM_RequestsUnchanged(benchmark::State& state)
{
    Contexts contexts;
    contexts.settle(state.range(0));
    const std::int64_t updates = contexts.network.updates();
    for (auto _ : state) contexts.requestAll();
    if (contexts.network.updates() != updates)
        state.SkipWithError("an unchanged context was updated");
    if (!contexts.isRight()) state.SkipWithError("contexts were mixed");
}

/// What each context has for itself is changed, in all of them.
void BM_RequestsAfterChange(benchmark::State& state)
{
    Contexts contexts;
    contexts.settle(state.range(0));
    const std::int64_t updates = contexts.network.updates();
    for (auto _ : state)
        for (std::size_t number = 0; number < contexts.pools.size(); ++number)
        {
            contexts.setLeaves(contexts.pools[number], static_cast<double>(number));
            contexts.network.request(contexts.pools[number]);
        }
    constexpr std::size_t kBodies = kChainsOfContexts * kLength + 1;
    if (contexts.network.updates() - updates !=
        state.iterations() * state.range(0) * static_cast<std::int64_t>(kBodies))
        state.SkipWithError("not each object concerned ran once a change");
    if (!contexts.isRight()) state.SkipWithError("contexts were mixed");
}

void BM_BytesOfContext(benchmark::State& state)
{
    Contexts contexts;
    for (auto _ : state)
    {
        const std::int64_t before = allocatedBytes();
        contexts.open(state.range(0));
        contexts.requestAll();
        reportBytes(state, allocatedBytes() - before, contexts.pools.size());
    }
}

/// 1, 10 and 100 contexts.
void counts(benchmark::internal::Benchmark* benchmark)
{
    benchmark->RangeMultiplier(10)->Range(1, 100)->Unit(benchmark::kMillisecond);
}

BENCHMARK(BM_FirstRequests)->Name("contexts, first request/ours")->Apply(counts);
BENCHMARK(BM_SecondRequests)->Name("contexts, second request/ours")->Apply(counts);
BENCHMARK(BM_RequestsUnchanged)->Name("contexts, unchanged/ours")->Apply(counts);
BENCHMARK(BM_RequestsAfterChange)->Name("contexts, own values changed/ours")->Apply(counts);
BENCHMARK(BM_BytesOfContext)->Name("bytes of a context/ours")->Apply(counts)->Iterations(1);

} // namespace
} // namespace QuorlBenchmark
