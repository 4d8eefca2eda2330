#include <quorl/modules/VModules.h>

#include <quorl/foundation/VGlobals.h>
#include <quorl/modules/VModule.h>

#include <vector>

namespace Quorl
{
namespace
{

VGlobals::ModuleTable& theModules()
{
    return *VGlobals::theGlobals().modules;
}

struct LeaveItems final : VManagedObject::VRemoveItem
{
    void removeItem(const string& /*module*/, const RefPtr<VManagedObject>& /*object*/) override {}
};

bool isHeldByTheTableAlone(const RefPtr<VModule>& module)
{
    return module.referer->strong < 2;
}

/// The paths of modules that are to be reloaded; loading changes the table.
std::vector<string> reloadable()
{
    std::vector<string> paths;
    for (const auto& [path, info] : theModules())
        if (info.module && info.module->haveNewerPlugin() && isHeldByTheTableAlone(info.module))
            paths.push_back(path);
    return paths;
}

} // namespace

VModules::Iterator::~Iterator() = default;

bool VModules::isLoadable(const string& path)
{
    return !theModules().contains(path);
}

int VModules::iterate(Iterator& visitor)
{
    int count = 0;
    for (const auto& [path, info] : theModules())
    {
        if (!info.loadable || !info.module) continue;
        const RefPtr<VModule> module = info.module; // a visitor may unload it
        if (!visitor.apply(path, module->path, module->sourceInfo, module->errorText)) break;
        ++count;
    }
    return count;
}

int VModules::countReloadablePlugins()
{
    int count = 0;
    for (const auto& [path, info] : theModules())
        if (info.module && info.module->haveNewerPlugin()) ++count;
    return count;
}

int VModules::reloadAllNew()
{
    VModuleHold::letGo();
    LeaveItems remover;
    int count = 0;
    for (const string& path : reloadable())
        if (ReloadVModule(path, remover)) ++count;
    return count;
}

bool VModules::enableCache(const string& path)
{
    return !theModules()[path].module;
}

RefPtr<VModule> VModules::find(const string& path)
{
    const auto entry = theModules().find(path);
    return entry == theModules().end() ? RefPtr<VModule>() : entry->second.module;
}

bool UnloadVModule(const string& path, VManagedObject::VRemoveItem& remover)
{
    VModuleHold::letGo();
    const auto entry = theModules().find(path);
    if (entry == theModules().end()) return false;
    VManagedObject::UnloadVModule(path, remover);
    entry->second.module = RefPtr<VModule>();
    return true;
}

bool ReloadVModule(const string& path, VManagedObject::VRemoveItem& remover)
{
    const string kept = path; // it may be that of the module
    return UnloadVModule(kept, remover) && LoadVModule(kept);
}

} // namespace Quorl
