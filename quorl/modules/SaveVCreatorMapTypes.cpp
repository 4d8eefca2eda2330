#include <quorl/modules/VCreatorCache.h>

#include <quorl/foundation/BinaryFile.h>
#include <quorl/foundation/StringFile.h>
#include <quorl/foundation/Typename.h>
#include <quorl/modules/ModuleFiles.h>
#include <quorl/registry/VCreatorBaseInfo.h>
#include <quorl/registry/VCreatorMap.h>
#include <quorl/registry/VCreatorMapTypes.h>

#include <cstdint>
#include <cstdio>

namespace Quorl
{
namespace
{

using Tolmen::fputnumber;
using Tolmen::fputstring;
using Tolmen::Platform::FileStatus;

/// The items of a file, one by one. A file that does not come to its end, as on a full disk, is
/// emptied: a scan passes over the modules that a cache names, also where half of their creators
/// are missing in it. The count of domains, which stands first, is 0 until all else is written, so
/// that whatever ends the process leaves a cache of nothing.
class CacheWriter
{
public:
    CacheWriter(const string& path, std::uint64_t domains)
        : path_(path), domains_(domains), file_(std::fopen(path.c_str(), "wb"))
    {
        if (!file_) return;
        isCountLast_ = std::fseek(file_.get(), 0, SEEK_SET) == 0; // not so in a pipe
        number(isCountLast_ ? std::uint64_t{0} : domains_);
    }
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
        if (isCountLast_) writeCount();
        if (std::fclose(file_.release()) != 0 || !isWhole_) empty();
    }

private:
    void writeCount()
    {
        isWhole_ =
            isWhole_ && std::fflush(file_.get()) == 0 && std::fseek(file_.get(), 0, SEEK_SET) == 0;
        if (isWhole_) number(domains_);
    }

    void empty()
    {
        file_.reset(); // first: it may have something left to write
        file_.reset(std::fopen(path_.c_str(), "wb"));
        file_.reset();
    }

    const string path_;
    const std::uint64_t domains_;
    Tolmen::OwnedFile file_;
    bool isCountLast_ = false;
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

} // namespace

bool SaveVCreatorMapTypes(const string& path)
{
    CacheWriter writer(path, VCreatorTypes().size());
    if (!writer.isOpen()) return false;
    ModuleFiles files;
    for (const auto& [type, map] : VCreatorTypes())
        if (map) writeDomain(Tolmen::Typename(type), *map, files, writer);
    writer.finish();
    return true;
}

} // namespace Quorl
