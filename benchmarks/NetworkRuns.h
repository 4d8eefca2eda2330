#pragma once

#include <benchmarks/MemoryUse.h>
#include <benchmarks/Topology.h>

#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>

/// What is done to networks, ours, bare ones and those of peers, whose objects all put out one more
/// than the sum of their inputs. A `Network` is made from a `Topology`, and has
///
///     void setLeaf(double)      the input of the first object, which nobody provides
///     bool request()            asks the last object; tells whether anything was done, if it can
///     double result()           the same, and tells what was computed
///     int64_t updates()         the bodies run so far, of all objects together

namespace QuorlBenchmark
{

/// A request that finds nothing to do.
template <class Network, auto shape, std::size_t... size>
void BM_RequestUnchanged(benchmark::State& state)
{
    const Topology topology = shape(size...);
    Network network(topology);
    network.request();
    const std::int64_t updates = network.updates();
    if (updates != static_cast<std::int64_t>(topology.objects()))
        return state.SkipWithError("the first request did not run each object once");
    network.request(); // may prepare those that are like it
    for (auto _ : state)
    {
        network.request();
        benchmark::ClobberMemory();
    }
    if (network.updates() != updates) state.SkipWithError("an unchanged network was updated");
    network.setLeaf(1);
    network.request();
    if (network.updates() - updates != static_cast<std::int64_t>(topology.dependents()))
        state.SkipWithError("the walk did not reach the first object");
}

/// The leaf is changed, and the end asked, to which a single path leads from there.
template <class Network, auto shape, std::size_t... size>
void BM_ChangeLeaf(benchmark::State& state)
{
    const Topology topology = shape(size...);
    Network network(topology);
    network.result();
    const double before = network.result(); // the second request may prepare those behind it
    const std::int64_t updates = network.updates();
    double leaf = 0;
    double result = before;
    for (auto _ : state)
    {
        network.setLeaf(++leaf);
        result = network.result();
    }
    if (result - before != leaf) state.SkipWithError("the change did not reach the end");
    const auto dependents = static_cast<std::int64_t>(topology.dependents());
    if (network.updates() - updates != state.iterations() * dependents)
        state.SkipWithError("not each object concerned ran once a change");
}

/// A change that nobody asks about, on an object with `others` behind it.
template <class Network, std::size_t others>
void BM_SetLeaf(benchmark::State& state)
{
    Network network(Topology::chain(others + 1));
    const double before = network.result();
    double leaf = 0;
    for (auto _ : state) network.setLeaf(++leaf);
    if (network.result() - before != leaf) state.SkipWithError("the value was not set");
}

template <class Network>
std::int64_t bytesOf(const Topology& shape)
{
    const std::int64_t before = allocatedBytes();
    const Network network(shape);
    return allocatedBytes() - before;
}

constexpr std::size_t kObjectsWeighed = 1000;

/// Of an object with an input and an output, with its place in whatever knows it by name.
template <class Network>
void BM_BytesOfObject(benchmark::State& state)
{
    bytesOf<Network>(Topology::loose(1)); // what is made once
    for (auto _ : state)
        reportBytes(state, bytesOf<Network>(Topology::loose(kObjectsWeighed)), kObjectsWeighed);
}

/// Of what a chain has more than the same objects without connections; less, where an input that is
/// connected lets go of what it had.
template <class Network>
void BM_BytesOfConnection(benchmark::State& state)
{
    bytesOf<Network>(Topology::chain(2)); // what is made once
    for (auto _ : state)
        reportBytes(state,
                    bytesOf<Network>(Topology::chain(kObjectsWeighed)) -
                        bytesOf<Network>(Topology::loose(kObjectsWeighed)),
                    kObjectsWeighed - 1);
}

} // namespace QuorlBenchmark
