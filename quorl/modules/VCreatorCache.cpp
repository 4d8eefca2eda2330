#include <quorl/modules/VCreatorCache.h>

#include <quorl/foundation/BinaryFile.h>
#include <quorl/foundation/StringFile.h>
#include <quorl/foundation/Typename.h>
#include <quorl/modules/VModules.h>
#include <quorl/platform/FileStatus.h>
#include <quorl/registry/VCreatorBaseInfo.h>
#include <quorl/registry/VCreatorMap.h>

#include <cstdint>
#include <cstdio>
#include <unordered_map>

namespace Quorl
{
namespace
{

using Tolmen::fgetstring;
using Tolmen::fputnumber;
using Tolmen::fputstring;
using Tolmen::Platform::FileStatus;
using Tolmen::Platform::fileStatus;

/// The low 32 bits, so that a large file compares as it was written.
std::int32_t shortSize(const FileStatus& status)
{
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(status.size));
}

/// Looks at each file once, however many creators its module has.
class ModuleFiles
{
public:
    const FileStatus& status(const string& path)
    {
        const auto [entry, isNew] = known_.try_emplace(path);
        if (isNew) entry->second = fileStatus(path);
        return entry->second;
    }

private:
    std::unordered_map<string, FileStatus> known_;
};

// Writing

void writeEntry(const string& name, const string& module, ModuleFiles& files, std::FILE* file)
{
    const FileStatus& status = files.status(module);
    if (!status.exists)
    {
        std::printf("MODULE [%s] DOES NOT EXIST\n", module.c_str());
        fputnumber(std::uint64_t{0}, file);
        fputnumber(std::uint64_t{0}, file);
        return;
    }
    fputstring(name, file);
    fputstring(module, file);
    fputnumber(shortSize(status), file);
    fputnumber(status.modifiedSeconds, file);
}

void writeDomain(const string& domain, const VCreatorMap& map, ModuleFiles& files, std::FILE* file)
{
    fputstring(domain, file);
    std::printf("** MODULE CACHE REGISTRY FOR DOMAIN [%s] ***\n", domain.c_str());
    fputnumber(std::uint64_t{map.priorities.size()}, file);
    for (const auto& [priority, name] : map.priorities)
    {
        fputnumber(std::int32_t{priority}, file);
        fputstring(name, file);
    }
    fputnumber(std::uint64_t{map.size()}, file);
    for (const auto& [name, info] : map)
        if (info) writeEntry(name, info->ModuleName, files, file);
}

// Reading. Deliberate: a number that cannot be read is 0, and the end of the file is not looked at,
// but for what would only repeat itself.

constexpr std::uint64_t kMostDomainsBehindTheEnd = 65536;

std::uint64_t readCount(std::FILE* file)
{
    std::uint64_t count = 0;
    Tolmen::fgetnumber(count, file);
    return count;
}

struct CachedEntry
{
    string name;
    string module;
    std::int32_t size = 0;
    std::int64_t modifiedSeconds = 0;
};

/// Says why not, if the module's file is not the one that was cached.
bool isOfPresentFile(const CachedEntry& entry, const FileStatus& status)
{
    const char* const module = entry.module.c_str();
    if (!status.exists)
        std::printf("  CACHED MODULE [%s] DOES NOT EXIST\n", module);
    else if (shortSize(status) != entry.size)
        std::printf("  CACHED MODULE [%s] HAS DIFFERENT SIZE FROM CACHE, NOT USED\n", module);
    else if (status.modifiedSeconds != entry.modifiedSeconds)
        std::printf("  CACHED MODULE [%s] HAS DIFFERENT MODIFICATION TIME FROM CACHE, NOT USED\n",
                    module);
    else
        return true;
    return false;
}

/// Deliberate: a module that is loaded leaves an entry without a record. Pinned by
/// VCreatorCache.LeavesAnEmptyEntryForAModuleThatIsLoaded.
void enter(const CachedEntry& entry, VCreatorMap& map)
{
    const char* const name = entry.name.c_str();
    const char* const module = entry.module.c_str();
    RefPtr<VCreatorBaseInfo>& info = map[entry.name];
    if (info)
    {
        if (info->ModuleName != entry.module)
            std::printf(" Info: A creator already exists for [%s] from [%s], cache is not used for "
                        "[%s]\n",
                        name, info->ModuleName.c_str(), module);
        return;
    }
    if (!VModules::enableCache(entry.module))
    {
        std::printf(" Info: A Module for [%s] already loaded, and this one should take care of "
                    "[%s], cache is not used.\n",
                    module, name);
        return;
    }
    info = new VCreatorBaseInfo;
    info->ModuleName = entry.module;
}

/// \param map null if the domain is not there.
/// \return whether the domain goes on behind the entry.
bool readEntry(std::uint64_t index, const string& domain, VCreatorMap* map, ModuleFiles& files,
               std::FILE* file)
{
    CachedEntry entry;
    entry.name = fgetstring(file);
    entry.module = fgetstring(file);
    if (entry.name.empty() || entry.module.empty())
    {
        std::printf("  SKIP %d [%s] in [%s]\n", static_cast<int>(index), entry.name.c_str(),
                    entry.module.c_str());
        return false;
    }
    Tolmen::fgetnumber(entry.size, file);
    Tolmen::fgetnumber(entry.modifiedSeconds, file);
    if (!isOfPresentFile(entry, files.status(entry.module))) return true;
    if (map)
        enter(entry, *map);
    else
        std::printf("  Info: No Creator Caching for domain [%s] is possible.\n", domain.c_str());
    return true;
}

VCreatorMap* findDomain(const string& name)
{
    for (const auto& [type, map] : VCreatorTypes())
        if (map && Tolmen::Typename(type.get()) == name) return map.rawptr();
    return nullptr;
}

/// Deliberate: priorities are not taken over, so that walks by priority do not see these entries.
void passOverPriorities(std::FILE* file)
{
    const std::uint64_t count = readCount(file);
    std::printf("Priorities: %d\n", static_cast<int>(count));
    for (std::uint64_t left = count; left > 0 && std::feof(file) == 0; --left)
    {
        std::int32_t priority = 0;
        Tolmen::fgetnumber(priority, file);
        fgetstring(file);
    }
}

void readDomain(ModuleFiles& files, std::FILE* file)
{
    const string domain = fgetstring(file);
    std::printf("Investigating [%s]\n", domain.c_str());
    VCreatorMap* const map = findDomain(domain);
    if (map) std::printf("  CACHING CREATORS FOR DOMAIN [%s]\n", domain.c_str());
    passOverPriorities(file);
    const std::uint64_t count = readCount(file);
    std::printf("Creators: %d\n", static_cast<int>(count));
    for (std::uint64_t index = 0; index < count; ++index)
        if (!readEntry(index, domain, map, files, file)) return;
}

} // namespace

bool SaveVCreatorMapTypes(const string& path)
{
    const Tolmen::OwnedFile file(std::fopen(path.c_str(), "wb"));
    if (!file) return false;
    ModuleFiles files;
    fputnumber(std::uint64_t{VCreatorTypes().size()}, file.get());
    for (const auto& [type, map] : VCreatorTypes())
        if (map) writeDomain(Tolmen::Typename(type.get()), *map, files, file.get());
    return true;
}

bool LoadVCreatorMapTypes(const string& path)
{
    const Tolmen::OwnedFile file(std::fopen(path.c_str(), "rb"));
    if (!file) return false;
    ModuleFiles files;
    const std::uint64_t domains = readCount(file.get());
    std::printf("TypeEntries: %d\n", static_cast<int>(domains));
    for (std::uint64_t number = 0; number < domains; ++number)
    {
        if (number >= kMostDomainsBehindTheEnd && std::feof(file.get()) != 0) break;
        readDomain(files, file.get());
    }
    return true;
}

} // namespace Quorl
