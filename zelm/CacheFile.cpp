#include "CacheFile.h"

#include "Output.h"

#include <quorl/modules/VCreatorCache.h>
#include <zelm/network/NetworkError.h>
#include <zelm/network/Replacement.h>
#include <zelm/network/WholeFile.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <system_error>

namespace Zelm
{
namespace
{

namespace fs = std::filesystem;

std::string usualPlace()
{
    if (const char* const place = std::getenv("ZELM_CACHE"); place && *place) return place;
    const char* const caches = std::getenv("XDG_CACHE_HOME");
    if (caches && *caches) return (fs::path(caches) / "zelm/creators.cache").string();
    const char* const home = std::getenv("HOME");
    return (fs::path(home ? home : ".") / ".cache/zelm/creators.cache").string();
}

/// \return nothing if this is no file that can be read.
std::optional<std::string> bytesOf(const std::string& file)
{
    std::error_code ignored;
    if (!fs::is_regular_file(file, ignored)) return std::nullopt;
    try
    {
        return readWholeFile(file);
    }
    catch (const NetworkError&)
    {
        return std::nullopt;
    }
}

/// What stands beside a cache. \return null if it is not of this program.
Json sumIn(const std::string& file)
{
    Json sum = Json::parse(bytesOf(file).value_or(""), nullptr, false);
    return sum.is_object() && sum.contains("checksum") ? sum : Json();
}

/// The 64-bit FNV-1a hash (Fowler, Noll, Vo). Against accidents, not against anybody.
std::uint64_t checksum(const std::string& bytes)
{
    std::uint64_t sum = 0xcbf29ce484222325U;
    for (const char byte : bytes) sum = (sum ^ static_cast<unsigned char>(byte)) * 0x100000001b3U;
    return sum;
}

/// By what a change of a module file is seen. \return null if it is not there.
Json stampOf(const std::string& file)
{
    std::error_code failure;
    const auto size = fs::file_size(file, failure);
    if (failure) return nullptr;
    const auto changed = fs::last_write_time(file, failure);
    return Json{{"bytes", size}, {"changed", changed.time_since_epoch().count()}};
}

} // namespace

CacheFile::CacheFile(const Settings& settings)
    : path_(settings.cache.empty() ? usualPlace() : settings.cache)
{
}

CacheFile::Verdict CacheFile::check(const Modules& modules) const
{
    const Json sum = sumIn(sumPath());
    if (isForeign(sum)) return Verdict::Foreign;
    const auto bytes = bytesOf(path_);
    if (!bytes) return Verdict::Absent;
    if (sum.value("checksum", Json()) != checksum(*bytes)) return Verdict::Torn;
    if (sum.value("folders", Json()) != Json(modules.folders())) return Verdict::Other;
    const Json stamps = sum.value("modules", Json::object());
    for (const auto& [file, stamp] : stamps.items())
        if (stampOf(file) != stamp) return Verdict::Stale;
    return Verdict::Good;
}

void CacheFile::use(const Modules& modules) const
{
    const Verdict verdict = check(modules);
    if (verdict == Verdict::Good) Quorl::LoadVCreatorMapTypes(path_);
    if (verdict == Verdict::Foreign) Output::complain(path_ + ": " + words(verdict));
    if (verdict != Verdict::Torn && verdict != Verdict::Stale) return;
    Output::complain("the cache " + path_ + " is dropped: " + words(verdict));
    drop();
}

void CacheFile::write(const Modules& modules) const
{
    refuseForeign();
    std::error_code ignored;
    if (fs::path(path_).has_parent_path())
        fs::create_directories(fs::path(path_).parent_path(), ignored);
    Replacement replacement(path_);
    const bool isWritten = Quorl::SaveVCreatorMapTypes(replacement.path());
    const auto bytes = isWritten ? bytesOf(replacement.path()) : std::nullopt;
    if (!bytes || bytes->empty())
        throw NetworkError(path_, {}, "", "", "the cache cannot be written");

    Json sum{{"checksum", checksum(*bytes)}, {"folders", modules.folders()}};
    sum["modules"] = Json::object();
    for (const ModuleState& module : modules.states())
        if (module.state == "loaded") sum["modules"][module.path] = stampOf(module.path);
    writeWholeFile(sumPath(), sum.dump(1) + "\n"); // first: without it a cache would be foreign
    replacement.takePlace();
}

bool CacheFile::drop() const
{
    refuseForeign();
    std::error_code ignored;
    const bool wasThere = fs::remove(path_, ignored);
    return fs::remove(sumPath(), ignored) || wasThere;
}

/// Neither is what has no sum of this program beside it, nor what stands in the place of the sum.
bool CacheFile::isForeign(const Json& sum) const
{
    const auto isThere = [](const std::string& file) {
        std::error_code failure;
        return fs::symlink_status(file, failure).type() != fs::file_type::not_found;
    };
    std::error_code ignored;
    if (isThere(path_) && !fs::is_regular_file(path_, ignored)) return true;
    return (isThere(path_) || isThere(sumPath())) && sum.is_null();
}

void CacheFile::refuseForeign() const
{
    if (isForeign(sumIn(sumPath()))) throw NetworkError(path_, {}, "", "", words(Verdict::Foreign));
}

std::string CacheFile::words(Verdict verdict)
{
    switch (verdict)
    {
        case Verdict::Absent: return "there is none";
        case Verdict::Foreign: return "this is no cache of creators, and is left alone";
        case Verdict::Torn: return "it is not as it was written";
        case Verdict::Stale: return "a module that it tells of has changed";
        case Verdict::Other: return "it is of other folders";
        case Verdict::Good: break;
    }
    return "it is good";
}

} // namespace Zelm
