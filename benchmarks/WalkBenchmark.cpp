#include <benchmarks/BareNetwork.h>
#include <benchmarks/NetworkRuns.h>
#include <benchmarks/ObjectNetwork.h>
#include <benchmarks/StoredPlan.h>
#include <benchmarks/Topology.h>

#include <benchmark/benchmark.h>

#include <string>

/// Requests: such as find nothing to do, and such as find that one leaf has changed; and changes
/// that nobody asks about.

namespace QuorlBenchmark
{
namespace
{

using Embedded = BareNetwork<Parameters::embedded>;
using OnHeap = BareNetwork<Parameters::onHeap>;
using ThroughHandles = BareNetwork<Parameters::throughHandles>;

template <auto shape, std::size_t... size>
void registerUnchanged(const std::string& subject)
{
    const auto add = [&](const char* who, auto run) {
        benchmark::RegisterBenchmark(("walk " + subject + "/" + who).c_str(), run);
    };
    add("ours", BM_RequestUnchanged<ObjectNetwork, shape, size...>);
    add("bare", BM_RequestUnchanged<Embedded, shape, size...>);
    add("bare, heap", BM_RequestUnchanged<OnHeap, shape, size...>);
    add("bare, handles", BM_RequestUnchanged<ThroughHandles, shape, size...>);
    add("bare, stored plan", BM_RequestUnchanged<StoredPlan, shape, size...>);
}

template <auto shape, std::size_t... size>
void registerChange(const std::string& subject)
{
    const auto add = [&](const char* who, auto run) {
        benchmark::RegisterBenchmark(("change " + subject + "/" + who).c_str(), run)
            ->Unit(benchmark::kMicrosecond);
    };
    add("ours", BM_ChangeLeaf<ObjectNetwork, shape, size...>);
    add("bare", BM_ChangeLeaf<Embedded, shape, size...>);
    add("bare, heap", BM_ChangeLeaf<OnHeap, shape, size...>);
    add("bare, handles", BM_ChangeLeaf<ThroughHandles, shape, size...>);
}

[[maybe_unused]] const bool areRegistered = [] {
    registerUnchanged<&Topology::chain, 1000>("chain of 1000");
    registerUnchanged<&Topology::fanIn, 1000>("fan-in of 1000");
    registerUnchanged<&Topology::binaryTree, 2047>("binary tree of 2047");
    registerUnchanged<&Topology::chains, 100, 1000>("100 chains of 1000");
    registerUnchanged<&Topology::layers, 4, 10>("4 layers of 10");
    registerUnchanged<&Topology::layers, 8, 10>("8 layers of 10");
    registerUnchanged<&Topology::layers, 12, 10>("12 layers of 10");
    registerUnchanged<&Topology::layers, 100, 1000>("100 layers of 1000");
    registerChange<&Topology::chain, 1000>("chain of 1000");
    registerChange<&Topology::chains, 100, 1000>("100 chains of 1000");
    return true;
}();

template <std::size_t others>
void BM_SetLeafFromText(benchmark::State& state)
{
    ObjectNetwork network(Topology::chain(others + 1));
    const double before = network.result();
    const std::string text = "-106.54422922529595";
    for (auto _ : state) network.setLeafFromText(text);
    if (network.result() == before) state.SkipWithError("the value was not set");
}

BENCHMARK(BM_SetLeaf<ObjectNetwork, 999>)->Name("set a typed value, chain of 1000/ours");
BENCHMARK(BM_SetLeaf<Embedded, 999>)->Name("set a typed value, chain of 1000/bare");
BENCHMARK(BM_SetLeaf<ObjectNetwork, 0>)->Name("set a typed value, one object/ours");
BENCHMARK(BM_SetLeaf<Embedded, 0>)->Name("set a typed value, one object/bare");
BENCHMARK(BM_SetLeafFromText<999>)->Name("set from text, chain of 1000/ours");
BENCHMARK(BM_SetLeafFromText<0>)->Name("set from text, one object/ours");

BENCHMARK(BM_BytesOfObject<ObjectNetwork>)->Name("bytes of an object/ours")->Iterations(1);
BENCHMARK(BM_BytesOfObject<OnHeap>)->Name("bytes of an object/bare, heap")->Iterations(1);
BENCHMARK(BM_BytesOfConnection<ObjectNetwork>)->Name("bytes of a connection/ours")->Iterations(1);

} // namespace
} // namespace QuorlBenchmark
