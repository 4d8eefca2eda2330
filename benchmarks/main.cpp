#include <benchmark/benchmark.h>

#include <thread>

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;

    // The standard library's shared pointers count without atomic instructions until a process has
    // started its first thread. Handles never do, so that the two would not be compared.
    std::thread([] {}).join();

    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
}
