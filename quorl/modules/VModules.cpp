#include <quorl/modules/VModules.h>

#include <quorl/foundation/VGlobals.h>
#include <quorl/modules/LeaveItems.h>
#include <quorl/modules/LoadScope.h>
#include <quorl/modules/VModule.h>
#include <quorl/modules/VModuleHold.h>

namespace Quorl
{
namespace
{

VGlobals::ModuleTable& theModules()
{
    return *VGlobals::theGlobals().modules;
}

/// Whether its file is newer, and nobody but the table has it.
bool isToBeReloaded(const VGlobals::ModuleInfo& info)
{
    return info.module && info.module->haveNewerPlugin() && info.module.referer->strong < 2;
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
    // One by one: what one of them does when it is loaded concerns those behind it.
    for (auto& [path, info] : theModules()) // nothing is ever taken out
        if (isToBeReloaded(info) && ReloadVModule(path, remover)) ++count;
    return count;
}

bool VModules::enableCache(const string& path)
{
    return !theModules()[path].module;
}

RefPtr<VModule> VModules::find(const string& path)
{
    const auto entry = theModules().find(path);
    if (entry != theModules().end() && entry->second.module) return entry->second.module;
    return LoadScope::find(path);
}

bool UnloadVModule(const string& path, VManagedObject::VRemoveItem& remover)
{
    VModuleHold::letGo();
    const auto entry = theModules().find(path);
    if (entry == theModules().end()) return false;
    VManagedObject::UnloadVModule(path, remover);
    const WeakPtr<VModule> module = entry->second.module;
    entry->second.module = RefPtr<VModule>();
    if (module) module->leaveBehind(); // an object has it, but its creators are to come back
    return true;
}

bool ReloadVModule(const string& path, VManagedObject::VRemoveItem& remover)
{
    const string kept = path; // it may be that of the module
    return UnloadVModule(kept, remover) && LoadVModule(kept);
}

} // namespace Quorl
