#include <benchmarks/ModulePaths.h>
#include <quorl/foundation/BinaryFile.h>
#include <quorl/foundation/VGlobals.h>
#include <quorl/modules/VCreatorCache.h>
#include <quorl/modules/VModule.h>
#include <quorl/modules/VModules.h>

#include <sys/stat.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

/// What a program that starts pays for its modules, once and with cold memory, as programs do: runs
/// one way to start and prints on standard error how long that took, in nanoseconds.

namespace
{

using Paths = std::vector<std::string>;

void readAll(const std::string& path)
{
    std::vector<char> bytes(std::filesystem::file_size(path));
    const Tolmen::OwnedFile file(std::fopen(path.c_str(), "rb"));
    if (!file || std::fread(bytes.data(), 1, bytes.size(), file.get()) != bytes.size())
        throw std::runtime_error("the cache was not read");
}

void statAll(const Paths& paths)
{
    for (const std::string& path : paths)
    {
        struct stat status = {};
        if (::stat(path.c_str(), &status) != 0) throw std::runtime_error("a module is missing");
    }
}

void expectNothingLoaded()
{
    const auto& table = *Quorl::VGlobals::theGlobals().modules;
    if (table.empty()) throw std::runtime_error("the cache knows no module");
    for (const auto& [path, info] : table)
        if (info.module) throw std::runtime_error("a module was loaded");
}

} // namespace

int main(int count, char** arguments)
try
{
    if (count != 4) throw std::runtime_error("usage: start-probe WAY CACHE DIRECTORY");
    const std::string cache = arguments[2];
    const std::string directory = arguments[3];
    const Paths paths = QuorlBenchmark::pathsIn(directory);
    const std::map<std::string, std::function<void()>> ways = {
        {"read", [&] { Quorl::LoadVCreatorMapTypes(cache); }},
        {"read-bare", [&] { readAll(cache), statAll(paths); }},
        {"start",
         [&] { Quorl::LoadVCreatorMapTypes(cache), Quorl::openModules(directory.c_str()); }},
        {"start-bare", [&] { readAll(cache), statAll(QuorlBenchmark::pathsIn(directory)); }},
    };
    const std::string way = arguments[1];
    const auto& run = ways.at(way);
    const auto before = std::chrono::steady_clock::now();
    run();
    const std::chrono::nanoseconds taken = std::chrono::steady_clock::now() - before;
    if (!way.ends_with("bare")) expectNothingLoaded();
    std::fprintf(stderr, "%lld\n", static_cast<long long>(taken.count()));
    return EXIT_SUCCESS;
}
catch (const std::exception& error)
{
    std::fprintf(stderr, "start-probe: %s\n", error.what());
    return EXIT_FAILURE;
}
