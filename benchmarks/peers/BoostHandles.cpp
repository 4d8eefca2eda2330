#include <benchmarks/CallRuns.h>

#include <benchmark/benchmark.h>
#include <boost/smart_ptr/intrusive_ptr.hpp>
#include <boost/smart_ptr/intrusive_ref_counter.hpp>

namespace QuorlBenchmark
{
namespace
{

/// Counted by atomic instructions, as handles are.
struct Object : boost::intrusive_ref_counter<Object, boost::thread_safe_counter>
{
    virtual ~Object() = default;
};

using Pointer = boost::intrusive_ptr<Object>;

void BM_Copy(benchmark::State& state)
{
    makeAgain(state, Pointer(new Object), [](const Pointer& it) { return it; });
}

void BM_MakeObject(benchmark::State& state)
{
    for (auto _ : state)
    {
        const Pointer made(new Object);
        benchmark::DoNotOptimize(made.get());
    }
}

BENCHMARK(BM_Copy)->Name("handle copy strong/boost::intrusive_ptr");
BENCHMARK(BM_MakeObject)->Name("handle make and end object/boost::intrusive_ptr");

} // namespace
} // namespace QuorlBenchmark
