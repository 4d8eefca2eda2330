#include <quorl/modules/VCreatorCache.h>

#include <quorl/foundation/BinaryFile.h>
#include <quorl/foundation/Typename.h>
#include <quorl/modules/ModuleFiles.h>
#include <quorl/modules/VModules.h>
#include <quorl/registry/VCreatorBaseInfo.h>
#include <quorl/registry/VCreatorMap.h>
#include <quorl/registry/VCreatorMapTypes.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <iterator>
#include <string_view>
#include <utility>

namespace Quorl
{
namespace
{

using std::string_view;
using Tolmen::Platform::FileStatus;
using Tolmen::Platform::fileStatus;

constexpr std::uint64_t kMostDomainsBehindTheEnd = 65536;
// Bytes. A larger file is read in several steps, and no more of what tells no size: it may have no
// end.
constexpr std::uint64_t kMostExpected = 1 << 24;

/// The items of a file, one by one. Deliberate: what is not there reads as 0 or as what there is of
/// a text, and the end of the file is not told.
class CacheReader
{
public:
    /// Reads the file to its end. \param expected its size, as far as is known.
    CacheReader(std::FILE* file, std::uint64_t expected)
    {
        const std::uint64_t most = std::max(expected, kMostExpected);
        std::size_t size = 0;
        while (size == bytes_.size() && size < most) // no room is left, so there may be more
        {
            const std::uint64_t room = size == 0 ? std::min(expected, kMostExpected) + 1 : 2 * size;
            bytes_.resize(std::min(room, most));
            size += std::fread(bytes_.data() + size, 1, bytes_.size() - size, file);
        }
        left_ = string_view(bytes_).substr(0, size);
    }

    template <class Integer>
    Integer number()
    {
        const string_view bytes = take(sizeof(Integer));
        return bytes.size() < sizeof(Integer) ? Integer{0}
                                              : Tolmen::fromLittleEndian<Integer>(bytes.data());
    }

    std::uint64_t count() { return number<std::uint64_t>(); }
    string_view text() { return take(count()); }
    bool isAtEnd() const { return left_.empty(); }

private:
    string_view take(std::uint64_t size)
    {
        const string_view taken = left_.substr(0, size);
        left_.remove_prefix(taken.size());
        return taken;
    }

    string bytes_;
    string_view left_;
};

struct CachedEntry
{
    string_view name;
    string_view module;
    std::int32_t size = 0;
    std::int64_t modifiedSeconds = 0;
};

/// Says why not, if the module's file is not the one that was cached.
bool isOfPresentFile(const CachedEntry& entry, const FileStatus& status)
{
    const char* line = nullptr;
    if (!status.exists)
        line = "  CACHED MODULE [%s] DOES NOT EXIST\n";
    else if (shortSize(status) != entry.size)
        line = "  CACHED MODULE [%s] HAS DIFFERENT SIZE FROM CACHE, NOT USED\n";
    else if (status.modifiedSeconds != entry.modifiedSeconds)
        line = "  CACHED MODULE [%s] HAS DIFFERENT MODIFICATION TIME FROM CACHE, NOT USED\n";
    if (line) std::printf(line, string(entry.module).c_str());
    return line == nullptr;
}

bool isNotLoaded(const string& module, ModuleFiles::Known& known)
{
    if (!known.isNotLoaded) known.isNotLoaded = VModules::enableCache(module);
    return *known.isNotLoaded;
}

/// Where the last entry went: the next one, which is greater, belongs behind it.
struct Place
{
    VCreatorMap* map = nullptr; // null if the domain is not there
    VCreatorMap::iterator hint;
};

/// Deliberate: a module that is loaded leaves an entry without a record. Pinned by
/// VCreatorCache.LeavesAnEmptyEntryForAModuleThatIsLoaded.
void enter(const CachedEntry& cached, ModuleFiles::Known& file, Place& place)
{
    const auto entry = place.map->try_emplace(place.hint, string(cached.name));
    if (place.hint != place.map->end()) place.hint = std::next(entry);
    const char* const name = entry->first.c_str();
    string module(cached.module);
    RefPtr<VCreatorBaseInfo>& info = entry->second;
    if (info)
    {
        if (info->ModuleName != module)
            std::printf(" Info: A creator already exists for [%s] from [%s], cache is not used for "
                        "[%s]\n",
                        name, info->ModuleName.c_str(), module.c_str());
        return;
    }
    if (!isNotLoaded(module, file))
    {
        std::printf(" Info: A Module for [%s] already loaded, and this one should take care of "
                    "[%s], cache is not used.\n",
                    module.c_str(), name);
        return;
    }
    info = new VCreatorBaseInfo;
    info->ModuleName = std::move(module);
}

/// \return whether the domain goes on behind the entry.
bool readEntry(std::uint64_t index, const string& domain, Place& place, ModuleFiles& files,
               CacheReader& reader)
{
    CachedEntry entry;
    entry.name = reader.text();
    entry.module = reader.text();
    if (entry.name.empty() || entry.module.empty())
    {
        std::printf("  SKIP %d [%s] in [%s]\n", static_cast<int>(index), string(entry.name).c_str(),
                    string(entry.module).c_str());
        return false;
    }
    entry.size = reader.number<std::int32_t>();
    entry.modifiedSeconds = reader.number<std::int64_t>();
    ModuleFiles::Known& file = files.of(entry.module);
    if (!isOfPresentFile(entry, file.status)) return true;
    if (place.map)
        enter(entry, file, place);
    else
        std::printf("  Info: No Creator Caching for domain [%s] is possible.\n", domain.c_str());
    return true;
}

VCreatorMap* findDomain(const string& name)
{
    for (const auto& [type, map] : VCreatorTypes())
        if (map && Tolmen::Typename(type) == name) return map.rawptr();
    return nullptr;
}

/// Deliberate: priorities are not taken over, so that walks by priority do not see these entries.
void passOverPriorities(CacheReader& reader)
{
    const std::uint64_t count = reader.count();
    std::printf("Priorities: %d\n", static_cast<int>(count));
    for (std::uint64_t left = count; left > 0 && !reader.isAtEnd(); --left)
    {
        reader.number<std::int32_t>();
        reader.text();
    }
}

void readDomain(ModuleFiles& files, CacheReader& reader)
{
    const string domain(reader.text());
    std::printf("Investigating [%s]\n", domain.c_str());
    VCreatorMap* const map = findDomain(domain);
    Place place{map, map ? map->begin() : VCreatorMap::iterator()};
    if (map) std::printf("  CACHING CREATORS FOR DOMAIN [%s]\n", domain.c_str());
    passOverPriorities(reader);
    const std::uint64_t count = reader.count();
    std::printf("Creators: %d\n", static_cast<int>(count));
    for (std::uint64_t index = 0; index < count; ++index)
        if (!readEntry(index, domain, place, files, reader)) return;
}

} // namespace

bool LoadVCreatorMapTypes(const string& path)
{
    const Tolmen::OwnedFile file(std::fopen(path.c_str(), "rb"));
    if (!file) return false;
    CacheReader reader(file.get(), static_cast<std::uint64_t>(fileStatus(path).size));
    ModuleFiles files;
    const std::uint64_t domains = reader.count();
    std::printf("TypeEntries: %d\n", static_cast<int>(domains));
    for (std::uint64_t number = 0; number < domains; ++number)
    {
        if (number >= kMostDomainsBehindTheEnd && reader.isAtEnd()) break;
        readDomain(files, reader);
    }
    return true;
}

} // namespace Quorl
