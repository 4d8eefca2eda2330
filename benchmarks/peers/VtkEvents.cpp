#include <benchmarks/CallRuns.h>

#include <benchmark/benchmark.h>
#include <vtkCommand.h>
#include <vtkNew.h>
#include <vtkObject.h>
#include <vtkSmartPointer.h>

#include <cstddef>
#include <cstdint>

namespace QuorlBenchmark
{
namespace
{

class CountingCommand : public vtkCommand
{
public:
    static CountingCommand* New() { return new CountingCommand; }
    vtkTypeMacro(CountingCommand, vtkCommand);

    void Execute(vtkObject* /*caller*/, unsigned long /*event*/, void* /*value*/) override
    {
        ++*count;
    }

    std::int64_t* count = nullptr;
};

template <std::size_t observers>
void BM_Notify(benchmark::State& state)
{
    std::int64_t calls = 0;
    const vtkNew<vtkObject> subject;
    for (std::size_t left = observers; left > 0; --left)
    {
        const vtkNew<CountingCommand> command;
        command->count = &calls;
        subject->AddObserver(vtkCommand::UserEvent, command);
    }
    double value = 1;
    tellAgain(state, observers, calls,
              [&] { subject->InvokeEvent(vtkCommand::UserEvent, &value); });
}

BENCHMARK(BM_Notify<1>)->Name("notify 1 observer/VTK");
BENCHMARK(BM_Notify<10>)->Name("notify 10 observers/VTK");
BENCHMARK(BM_Notify<1000>)->Name("notify 1000 observers/VTK");

} // namespace
} // namespace QuorlBenchmark
