#include "Modules.h"

#include "GeoidError.h"

#include <quorl/foundation/VGlobals.h>
#include <quorl/kit/Network.h>
#include <quorl/modules/VCreatorCache.h>
#include <quorl/modules/VModule.h>
#include <quorl/modules/VModules.h>
#include <quorl/registry/VCreatorBase.h>

#include <algorithm>
#include <vector>

namespace Geoid
{
namespace
{

/// In one step, so that a start that is broken off leaves no half of a cache. To be done before
/// there are objects, which a cache cannot tell.
void writeCache(const std::filesystem::path& cache)
{
    const std::string unfinished = cache.string() + ".new";
    if (Quorl::SaveVCreatorMapTypes(unfinished))
        std::filesystem::rename(unfinished, cache);
    else
        throw GeoidError("'" + cache.string() + "': the cache cannot be written");
}

/// Loads those that only the cache knows.
void loadAll()
{
    std::vector<std::string> waiting;
    for (const auto& [path, info] : *Quorl::VGlobals::theGlobals().modules)
        if (!info.module) waiting.push_back(path);
    for (const std::string& path : waiting) Quorl::LoadVModule(path);
}

} // namespace

Modules::Modules(const std::filesystem::path& folder, const std::filesystem::path& cache)
{
    const bool isCached = !cache.empty() && Quorl::LoadVCreatorMapTypes(cache.string());
    files_ = Quorl::openModules(folder.string());
    if (files_ == 0) throw GeoidError("'" + folder.string() + "': there are no modules");
    if (!cache.empty() && (!isCached || opened() > 0)) writeCache(cache);
}

Quorl::RefPtr<Quorl::VCreatorBase> Modules::creator(const std::string& name) const
{
    if (const auto found = Quorl::findCreator(name)) return found;
    loadAll();
    return Quorl::findCreator(name);
}

int Modules::opened() const
{
    const auto& table = *Quorl::VGlobals::theGlobals().modules;
    return static_cast<int>(std::ranges::count_if(
        table, [](const auto& entry) { return static_cast<bool>(entry.second.module); }));
}

} // namespace Geoid
