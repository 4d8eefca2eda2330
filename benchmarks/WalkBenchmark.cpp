#include <benchmarks/BareNetwork.h>
#include <benchmarks/ObjectNetwork.h>
#include <benchmarks/Topology.h>

#include <benchmark/benchmark.h>

/// A request that finds nothing to do. Items are visits of objects: where branches are shared, the
/// walk enters an object once for each path to it, and so does the bare one.

namespace QuorlBenchmark
{
namespace
{

void reportVisits(benchmark::State& state, const Topology& topology)
{
    state.SetItemsProcessed(state.iterations() * topology.visits());
}

template <auto shape, std::size_t... size>
void BM_RequestUnchanged(benchmark::State& state)
{
    const Topology topology = shape(size...);
    ObjectNetwork network(topology);
    network.request();
    const std::int64_t updates = network.updates();
    if (updates != static_cast<std::int64_t>(topology.objects()))
        return state.SkipWithError("the first request did not run each object once");
    bool wasModified = false;
    for (auto _ : state) wasModified |= network.request();
    if (wasModified || network.updates() != updates)
        state.SkipWithError("an unchanged network was updated");
    if (network.requestAndCountVisits() != topology.visits())
        state.SkipWithError("the walk did not take every path");
    reportVisits(state, topology);
}

template <auto shape, std::size_t... size>
void BM_CompareAges(benchmark::State& state)
{
    const Topology topology = shape(size...);
    BareNetwork network(topology);
    bool isStale = false;
    for (auto _ : state)
    {
        isStale |= network.request();
        benchmark::ClobberMemory();
    }
    if (isStale) state.SkipWithError("an unchanged network is stale");
    network.touch(0);
    if (!network.request()) state.SkipWithError("the walk did not reach the first object");
    reportVisits(state, topology);
}

BENCHMARK(BM_RequestUnchanged<&Topology::chain, 1000>)->Name("walk chain of 1000/ours");
BENCHMARK(BM_CompareAges<&Topology::chain, 1000>)->Name("walk chain of 1000/bare");
BENCHMARK(BM_RequestUnchanged<&Topology::fanIn, 1000>)->Name("walk fan-in of 1000/ours");
BENCHMARK(BM_CompareAges<&Topology::fanIn, 1000>)->Name("walk fan-in of 1000/bare");
BENCHMARK(BM_RequestUnchanged<&Topology::binaryTree, 2047>)->Name("walk binary tree of 2047/ours");
BENCHMARK(BM_CompareAges<&Topology::binaryTree, 2047>)->Name("walk binary tree of 2047/bare");
BENCHMARK(BM_RequestUnchanged<&Topology::chains, 100, 1000>)->Name("walk 100 chains of 1000/ours");
BENCHMARK(BM_CompareAges<&Topology::chains, 100, 1000>)->Name("walk 100 chains of 1000/bare");
BENCHMARK(BM_RequestUnchanged<&Topology::layers, 2>)->Name("walk 2 layers of 10/ours");
BENCHMARK(BM_CompareAges<&Topology::layers, 2>)->Name("walk 2 layers of 10/bare");
BENCHMARK(BM_RequestUnchanged<&Topology::layers, 4>)->Name("walk 4 layers of 10/ours");
BENCHMARK(BM_CompareAges<&Topology::layers, 4>)->Name("walk 4 layers of 10/bare");
BENCHMARK(BM_RequestUnchanged<&Topology::layers, 6>)->Name("walk 6 layers of 10/ours");
BENCHMARK(BM_CompareAges<&Topology::layers, 6>)->Name("walk 6 layers of 10/bare");
BENCHMARK(BM_RequestUnchanged<&Topology::layers, 8>)->Name("walk 8 layers of 10/ours");
BENCHMARK(BM_CompareAges<&Topology::layers, 8>)->Name("walk 8 layers of 10/bare");

} // namespace
} // namespace QuorlBenchmark
