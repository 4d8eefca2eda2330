#include <quorl/modules/VCreatorCache.h>

#include <quorl/foundation/BinaryFile.h>
#include <quorl/foundation/StringFile.h>
#include <quorl/foundation/Typename.h>
#include <quorl/modules/VModules.h>
#include <quorl/platform/FileStatus.h>
#include <quorl/registry/VCreatorBaseInfo.h>
#include <quorl/registry/VCreatorMap.h>
#include <quorl/registry/VCreatorMapTypes.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <iterator>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace Quorl
{
namespace
{

using std::string_view;
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
    struct Known
    {
        FileStatus status;
        std::optional<bool> isNotLoaded; // once it was made known to the table of modules
    };

    Known& of(string_view path)
    {
        if (!last_ || path != *last_)
        {
            const auto [entry, isNew] = files_.try_emplace(string(path));
            if (isNew) entry->second.status = fileStatus(entry->first);
            last_ = &entry->first;
            known_ = &entry->second;
        }
        return *known_;
    }

private:
    std::unordered_map<string, Known> files_;
    const string* last_ = nullptr; // neighbours are often of one module
    Known* known_ = nullptr;
};

// Writing

/// The items of a file, one by one. A file that does not come to its end, as on a full disk, is
/// emptied: a scan passes over the modules that a cache names, also where half of their creators
/// are missing in it.
class CacheWriter
{
public:
    explicit CacheWriter(const string& path) : path_(path), file_(std::fopen(path.c_str(), "wb")) {}
    CacheWriter(const CacheWriter&) = delete;
    CacheWriter& operator=(const CacheWriter&) = delete;
    ~CacheWriter()
    {
        if (file_) empty(); // an exception passes
    }

    bool isOpen() const { return file_ != nullptr; }

    template <class Integer>
    void number(Integer value)
    {
        isWhole_ = fputnumber(value, file_.get()) && isWhole_;
    }

    void text(const string& value) { isWhole_ = fputstring(value, file_.get()) && isWhole_; }

    /// All has been told.
    void finish()
    {
        if (std::fclose(file_.release()) != 0 || !isWhole_) empty();
    }

private:
    void empty()
    {
        file_.reset(); // first: it may have something left to write
        file_.reset(std::fopen(path_.c_str(), "wb"));
        file_.reset();
    }

    const string path_;
    Tolmen::OwnedFile file_;
    bool isWhole_ = true;
};

void writeEntry(const string& name, const string& module, ModuleFiles& files, CacheWriter& writer)
{
    const FileStatus& status = files.of(module).status;
    if (!status.exists)
    {
        std::printf("MODULE [%s] DOES NOT EXIST\n", module.c_str());
        writer.number(std::uint64_t{0});
        writer.number(std::uint64_t{0});
        return;
    }
    writer.text(name);
    writer.text(module);
    writer.number(shortSize(status));
    writer.number(status.modifiedSeconds);
}

void writeDomain(const string& domain, const VCreatorMap& map, ModuleFiles& files,
                 CacheWriter& writer)
{
    writer.text(domain);
    std::printf("** MODULE CACHE REGISTRY FOR DOMAIN [%s] ***\n", domain.c_str());
    writer.number(std::uint64_t{map.priorities().size()});
    for (const auto& [priority, name] : map.priorities())
    {
        writer.number(std::int32_t{priority});
        writer.text(name);
    }
    writer.number(std::uint64_t{map.size()});
    for (const auto& [name, info] : map)
        if (info) writeEntry(name, info->ModuleName, files, writer);
}

// Reading

constexpr std::uint64_t kMostDomainsBehindTheEnd = 65536;
constexpr std::uint64_t kMostExpected = 1 << 24; // bytes; a larger file is read in several steps

/// The items of a file, one by one. Deliberate: what is not there reads as 0 or as what there is of
/// a text, and the end of the file is not told.
class CacheReader
{
public:
    /// Reads the file to its end. \param expected its size, as far as is known.
    CacheReader(std::FILE* file, std::uint64_t expected)
    {
        std::size_t size = 0;
        while (size == bytes_.size()) // no room is left, so there may be more
        {
            bytes_.resize(size == 0 ? std::min(expected, kMostExpected) + 1 : 2 * size);
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

bool SaveVCreatorMapTypes(const string& path)
{
    CacheWriter writer(path);
    if (!writer.isOpen()) return false;
    ModuleFiles files;
    writer.number(std::uint64_t{VCreatorTypes().size()});
    for (const auto& [type, map] : VCreatorTypes())
        if (map) writeDomain(Tolmen::Typename(type), *map, files, writer);
    writer.finish();
    return true;
}

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
