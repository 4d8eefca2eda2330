#include <quorl/modules/VModules.h>
#include <quorl/platform/Directory.h>

#include <cstdio>

namespace Quorl
{
namespace
{

using Tolmen::Platform::kPathSeparator;

constexpr const char* kSuffix = ".zelm";

/// Counts the files of one directory, and loads those that are not known.
int openFiles(const string& directory, bool (*progress)(const char*, bool), bool countOnly)
{
    const string prefix = directory + kPathSeparator;
    const auto names = Tolmen::Platform::namesIn(prefix, kSuffix);
    for (const string& name : names)
    {
        if (countOnly) break;
        string path = prefix;
        path += name;
        if (!VModules::isLoadable(path))
        {
            std::printf(" SKIP loading of %s\n", path.c_str());
            continue;
        }
        if (progress) progress(path.c_str(), false);
        LoadVModule(path);
    }
    if (names.empty())
    {
        std::printf("\n*******\nERROR in searching modules in %s\n*******\n\n", directory.c_str());
        std::fflush(stdout);
    }
    return static_cast<int>(names.size());
}

} // namespace

int openModules(const string& directory, bool (*progress)(const char*, bool), bool countOnly,
                const RefPtr<Tolmen::StringList>& subdirectories)
{
    int count = 0;
    if (subdirectories)
        for (const string& subdirectory : *subdirectories)
            count += openModules(directory + kPathSeparator + subdirectory, progress, countOnly);
    return count + openFiles(directory, progress, countOnly);
}

} // namespace Quorl
