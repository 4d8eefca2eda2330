#include <benchmarks/CallRuns.h>

#include <benchmark/benchmark.h>
#include <vtkObject.h>
#include <vtkSmartPointer.h>
#include <vtkWeakPointer.h>

namespace QuorlBenchmark
{
namespace
{

using Pointer = vtkSmartPointer<vtkObject>;
using Weak = vtkWeakPointer<vtkObject>;

void BM_MakeObject(benchmark::State& state)
{
    for (auto _ : state)
    {
        const auto made = Pointer::New();
        benchmark::DoNotOptimize(made.Get());
    }
}

void BM_Copy(benchmark::State& state)
{
    makeAgain(state, Pointer::New(), [](const Pointer& it) { return it; });
}

void BM_Lock(benchmark::State& state)
{
    const auto owner = Pointer::New();
    makeAgain(state, Weak(owner), [](const Weak& it) { return Pointer(it.Get()); });
}

BENCHMARK(BM_MakeObject)->Name("handle make and end object/VTK");
BENCHMARK(BM_Copy)->Name("handle copy strong/VTK");
BENCHMARK(BM_Lock)->Name("handle lock/VTK");

} // namespace
} // namespace QuorlBenchmark
