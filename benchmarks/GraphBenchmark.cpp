#include <benchmarks/ObjectNetwork.h>
#include <benchmarks/Topology.h>

#include <quorl/objects/VDataFlowGraph.h>

#include <benchmark/benchmark.h>

#include <cstddef>
#include <map>
#include <set>
#include <vector>

/// Graphs of networks of up to 100,000 objects. Items are edges.
namespace QuorlBenchmark
{
namespace
{

template <auto shape, std::size_t... size>
void BM_RebuildGraph(benchmark::State& state)
{
    const Topology topology = shape(size...);
    const ObjectNetwork network(topology);
    Quorl::VDataFlowGraph graph({});
    for (auto _ : state) graph.rebuild(network.last());
    if (graph.Edges.size() != topology.edges()) state.SkipWithError("edges are missing");
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(topology.edges()));
}

/// The same tables of plain numbers.
template <auto shape, std::size_t... size>
void BM_RebuildTables(benchmark::State& state)
{
    using EdgeSet = std::set<std::pair<std::size_t, std::size_t>>;
    const Topology topology = shape(size...);
    std::map<std::size_t, std::vector<EdgeSet::const_iterator>> vertices;
    EdgeSet edges;
    for (auto _ : state)
    {
        vertices.clear();
        edges.clear();
        for (std::size_t object = 0; object < topology.objects(); ++object)
            for (const std::size_t source : topology.inputs[object])
            {
                const auto edge = edges.emplace(source, object).first;
                vertices[object].push_back(edge);
                vertices[source].push_back(edge);
            }
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(edges.size()));
}

BENCHMARK(BM_RebuildGraph<&Topology::chain, 1000>)->Name("graph chain of 1000/ours");
BENCHMARK(BM_RebuildTables<&Topology::chain, 1000>)->Name("graph chain of 1000/bare");
BENCHMARK(BM_RebuildGraph<&Topology::chain, 100000>)->Name("graph chain of 100000/ours");
BENCHMARK(BM_RebuildTables<&Topology::chain, 100000>)->Name("graph chain of 100000/bare");
BENCHMARK(BM_RebuildGraph<&Topology::fanIn, 1000>)->Name("graph fan-in of 1000/ours");
BENCHMARK(BM_RebuildTables<&Topology::fanIn, 1000>)->Name("graph fan-in of 1000/bare");
BENCHMARK(BM_RebuildGraph<&Topology::fanIn, 100000>)->Name("graph fan-in of 100000/ours");
BENCHMARK(BM_RebuildTables<&Topology::fanIn, 100000>)->Name("graph fan-in of 100000/bare");
BENCHMARK(BM_RebuildGraph<&Topology::layers, 100, 10>)->Name("graph 100 layers/ours");
BENCHMARK(BM_RebuildTables<&Topology::layers, 100, 10>)->Name("graph 100 layers/bare");
BENCHMARK(BM_RebuildGraph<&Topology::layers, 10000, 10>)->Name("graph 10000 layers/ours");
BENCHMARK(BM_RebuildTables<&Topology::layers, 10000, 10>)->Name("graph 10000 layers/bare");

} // namespace
} // namespace QuorlBenchmark
