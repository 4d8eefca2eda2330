#pragma once

#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>

namespace QuorlBenchmark
{

/// Tells observers again and again, with `tell`, that something has changed. They count their
/// calls.
template <class Tell>
void tellAgain(benchmark::State& state, std::size_t observers, const std::int64_t& calls, Tell tell)
{
    for (auto _ : state) tell();
    const auto expected = state.iterations() * static_cast<std::int64_t>(observers);
    if (calls != expected) state.SkipWithError("not all observers were told");
}

/// Makes a pointer from `source` again and again, with `make`, and drops it.
template <class Source, class Make>
void makeAgain(benchmark::State& state, Source source, Make make)
{
    for (auto _ : state)
    {
        benchmark::DoNotOptimize(&source);
        auto made = make(source);
        benchmark::DoNotOptimize(&made);
    }
}

} // namespace QuorlBenchmark
