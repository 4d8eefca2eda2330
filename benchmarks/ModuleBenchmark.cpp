#include <benchmarks/ModulePaths.h>
#include <quorl/foundation/VGlobals.h>
#include <quorl/modules/VCreatorCache.h>
#include <quorl/modules/VModule.h>
#include <quorl/modules/VModules.h>
#include <quorl/registry/VCreatorBaseInfo.h>
#include <quorl/registry/VCreatorMapTypes.h>
#include <quorl/registry/VInputCreatorBase.h>

#include <benchmark/benchmark.h>

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

/// The start of a program with 200 modules of five creators each. Beside it, what the system alone
/// takes for the same files.

namespace QuorlBenchmark
{
namespace
{

using Quorl::RefPtr;
using Quorl::VManagedObject;

constexpr int kModules = 200;
constexpr int kCreators = 5 * kModules;
constexpr std::string_view kCategory = "Benchmark/";

/// What the kernel says goes nowhere while this lives.
class Silence
{
public:
    Silence()
    {
        std::fflush(stdout);
        before_ = ::dup(STDOUT_FILENO);
        const int nowhere = ::open("/dev/null", O_WRONLY);
        ::dup2(nowhere, STDOUT_FILENO);
        ::close(nowhere);
    }
    Silence(const Silence&) = delete;
    Silence& operator=(const Silence&) = delete;
    ~Silence()
    {
        std::fflush(stdout);
        ::dup2(before_, STDOUT_FILENO);
        ::close(before_);
    }

private:
    int before_;
};

std::vector<std::string> modulePaths()
{
    return pathsIn(BENCHMARK_MODULES);
}

int creators()
{
    int count = 0;
    for (const auto& [name, info] : *Quorl::VCreators(typeid(Quorl::VInputCreatorBase)))
        if (name.starts_with(kCategory)) ++count;
    return count;
}

/// As if none had ever been known.
void forgetModules()
{
    struct LeaveItems final : VManagedObject::VRemoveItem
    {
        void removeItem(const std::string& /*module*/,
                        const RefPtr<VManagedObject>& /*item*/) override
        {
        }
    } remover;
    auto& table = *Quorl::VGlobals::theGlobals().modules;
    for (auto& [path, info] : table)
        if (info.module) Quorl::UnloadVModule(path, remover);
    table.clear();
    std::vector<std::string> names;
    for (const auto& [name, info] : *Quorl::VCreators(typeid(Quorl::VInputCreatorBase)))
        if (name.starts_with(kCategory)) names.push_back(name);
    for (const std::string& name : names)
        VManagedObject::remove(typeid(Quorl::VInputCreatorBase), name);
}

/// A cache of all modules.
std::string cacheFile()
{
    static const std::string path =
        (std::filesystem::temp_directory_path() / "quorl-benchmark.cache").string();
    const Silence silence;
    Quorl::openModules(BENCHMARK_MODULES);
    Quorl::SaveVCreatorMapTypes(path);
    forgetModules();
    return path;
}

void BM_CountModules(benchmark::State& state)
{
    for (auto _ : state)
        if (Quorl::openModules(BENCHMARK_MODULES, nullptr, true) != kModules)
            state.SkipWithError("not all modules were counted");
}

void BM_ListFiles(benchmark::State& state)
{
    for (auto _ : state) benchmark::DoNotOptimize(modulePaths().data());
}

void BM_LoadModules(benchmark::State& state)
{
    const Silence silence;
    for (auto _ : state)
    {
        Quorl::openModules(BENCHMARK_MODULES);
        state.PauseTiming();
        if (creators() != kCreators) state.SkipWithError("not all creators came");
        forgetModules();
        state.ResumeTiming();
    }
}

/// The static initialisers register the creators here as well.
void BM_DynamicLoad(benchmark::State& state)
{
    const Silence silence;
    for (auto _ : state)
    {
        std::vector<void*> handles;
        for (const std::string& path : modulePaths())
        {
            VManagedObject::CurrentLoadModule = path;
            handles.push_back(::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL));
        }
        state.PauseTiming();
        VManagedObject::CurrentLoadModule.clear();
        if (creators() != kCreators) state.SkipWithError("not all creators came");
        for (void* const handle : handles) ::dlclose(handle);
        forgetModules();
        state.ResumeTiming();
    }
}

/// A start in a process of its own, since a program starts but once, and on cold memory.
void BM_CachedStart(benchmark::State& state, const std::string& way)
{
    const std::string command =
        START_PROBE " " + way + " " + cacheFile() + " " BENCHMARK_MODULES " 2>&1 >/dev/null";
    for (auto _ : state)
    {
        std::FILE* const probe = ::popen(command.c_str(), "r");
        long long nanoseconds = 0;
        if (std::fscanf(probe, "%lld", &nanoseconds) != 1) state.SkipWithError("the probe failed");
        ::pclose(probe);
        state.SetIterationTime(static_cast<double>(nanoseconds) * 1e-9);
    }
}

void BM_FirstFind(benchmark::State& state)
{
    const std::string cache = cacheFile();
    const std::string name = std::string(kCategory) + "m100/Third";
    const Silence silence;
    for (auto _ : state)
    {
        state.PauseTiming();
        Quorl::LoadVCreatorMapTypes(cache);
        state.ResumeTiming();
        if (!VManagedObject::find(typeid(Quorl::VInputCreatorBase), name))
            state.SkipWithError("the creator did not come");
        state.PauseTiming();
        forgetModules();
        state.ResumeTiming();
    }
}

void BM_FirstLoad(benchmark::State& state)
{
    const Silence silence;
    const std::string path = modulePaths()[kModules / 2];
    for (auto _ : state)
    {
        VManagedObject::CurrentLoadModule = path;
        void* const handle = ::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
        state.PauseTiming();
        VManagedObject::CurrentLoadModule.clear();
        ::dlclose(handle);
        forgetModules();
        state.ResumeTiming();
    }
}

BENCHMARK(BM_CountModules)->Name("200 modules, counted/ours")->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_ListFiles)->Name("200 modules, counted/bare")->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_LoadModules)->Name("200 modules, loaded/ours")->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_DynamicLoad)->Name("200 modules, loaded/dlopen")->Unit(benchmark::kMicrosecond);

void registerStart(const char* name, const char* way)
{
    benchmark::RegisterBenchmark(name, BM_CachedStart, std::string(way))
        ->Unit(benchmark::kMicrosecond)
        ->Iterations(21)
        ->UseManualTime();
}

const bool startsAreRegistered = [] {
    registerStart("200 modules, cache/ours", "read");
    registerStart("200 modules, cache/bare, stat and read", "read-bare");
    registerStart("200 modules, cached start/ours", "start");
    registerStart("200 modules, cached start/bare, list, stat and read", "start-bare");
    return true;
}();

BENCHMARK(BM_FirstFind)->Name("first find of a cached one/ours")->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_FirstLoad)->Name("first find of a cached one/dlopen")->Unit(benchmark::kMicrosecond);

} // namespace
} // namespace QuorlBenchmark
