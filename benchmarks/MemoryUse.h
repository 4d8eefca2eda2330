#pragma once

#include <benchmark/benchmark.h>

#include <malloc.h>

#include <cstddef>
#include <cstdint>

namespace QuorlBenchmark
{

/// What the process has allocated at the moment, as the C library counts it: each block with its
/// head and rounded up, large ones included.
inline std::int64_t allocatedBytes()
{
    const struct mallinfo2 use = ::mallinfo2();
    return static_cast<std::int64_t>(use.uordblks + use.hblkhd);
}

/// The counter that stands in the place of a time where bytes are measured.
inline void reportBytes(benchmark::State& state, std::int64_t bytes, std::size_t things)
{
    state.counters["bytes"] = static_cast<double>(bytes) / static_cast<double>(things);
}

} // namespace QuorlBenchmark
