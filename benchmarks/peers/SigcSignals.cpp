#include <benchmarks/CallRuns.h>

#include <benchmark/benchmark.h>
#include <sigc++/sigc++.h>

#include <cstddef>
#include <cstdint>

namespace QuorlBenchmark
{
namespace
{

template <std::size_t observers>
void BM_Notify(benchmark::State& state)
{
    std::int64_t calls = 0;
    sigc::signal<void(const double&)> changed;
    for (std::size_t left = observers; left > 0; --left)
        changed.connect([&calls](const double&) { ++calls; });
    const double value = 1;
    tellAgain(state, observers, calls, [&] { changed.emit(value); });
}

BENCHMARK(BM_Notify<1>)->Name("notify 1 observer/sigc++");
BENCHMARK(BM_Notify<10>)->Name("notify 10 observers/sigc++");
BENCHMARK(BM_Notify<1000>)->Name("notify 1000 observers/sigc++");

} // namespace
} // namespace QuorlBenchmark
