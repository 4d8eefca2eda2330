#include <quorl/foundation/SteadyWalk.h>
#include <quorl/modules/VModules.h> // tells which modules are loaded
#include <quorl/registry/PriorityWalk.h>
#include <quorl/registry/VCreatorBaseInfo.h>
#include <quorl/registry/VCreatorMap.h>
#include <quorl/registry/VCreatorMapTypes.h>
#include <quorl/registry/VManagedObject.h>

#include <cstdio>

namespace Quorl
{
namespace
{

/// An object that nobody owns stands in the registry against its rules. Said, and then passed over.
void reportUnowned(const VCreatorBaseInfo& info, const string& name)
{
    const RefPtr<VManagedObject>& creator = info.getCreator();
    if (!creator.referer->isUnowned()) return;
    std::printf("VManagedObject::traverse(): %s [%s]\n", name.c_str(), info.ModuleName.c_str());
    static_cast<const VManagedObjectBase&>(*creator).self.Speak("VInfo->getCreator()", "");
    std::fflush(stdout);
}

/// Shows the live objects with a priority in [from, to). \return the number of true answers.
template <class Show>
int walkPriorities(VCreatorMap& domain, int from, int to, Show&& show)
{
    int count = 0;
    string name; // a copy: visitors may erase the entry
    for (PriorityWalk walk(domain, from); !walk.isAtEnd() && walk.priority() < to; walk.goOn())
    {
        const VCreatorMap::Entry* const entry = domain.lookUp(walk.line());
        if (!entry || !entry->second || !entry->second->getCreator()) continue;
        reportUnowned(*entry->second, entry->first);
        name = walk.line();
        const RefPtr<VManagedObject> object = entry->second->getCreator();
        if (!show(walk.priority(), object, name)) break;
        ++count;
    }
    return count;
}

enum class WalkAnswer
{
    Count,
    PassOver,
    Stop, ///< ends the walk of this domain
};

/// Shows all entries that have a record, domain by domain, by name. Entries may come and go
/// meanwhile. \return the number of those to be counted.
template <class Show>
int walkEntries(Show&& show)
{
    int count = 0;
    for (const auto& [type, domain] : VCreatorTypes())
    {
        if (!domain) continue;
        Tolmen::walkSteadily(
            *domain, [&](const string& name, const RefPtr<VCreatorBaseInfo>& info) {
                const auto answer = info ? show(*info, name) : WalkAnswer::PassOver;
                if (answer == WalkAnswer::Count) ++count;
                return answer != WalkAnswer::Stop;
            });
    }
    return count;
}

} // namespace

int VManagedObject::traverse(const std::type_info& domain, VManagedObjectIterator& visitor,
                             int from, int to)
{
    return walkPriorities(
        *VCreators(domain), from, to,
        [&](int priority, const RefPtr<VManagedObject>& object, const string& name) {
            return visitor.apply(priority, object, name);
        });
}

int VManagedObject::iterate(const std::type_info& domain, const Visit& visit, int from, int to)
{
    return walkPriorities(*VCreators(domain), from, to, visit);
}

int VManagedObject::iterateModules(ModuleIterator& visitor)
{
    return iterateModules([&](const string& module, const RefPtr<VManagedObject>& object,
                              const string& name) { return visitor.apply(module, object, name); });
}

int VManagedObject::iterateModules(const ModuleVisit& visit)
{
    return walkEntries([&](const VCreatorBaseInfo& info, const string& name) {
        const string module = info.ModuleName;
        if (!VModules::isLoadable(module)) return WalkAnswer::PassOver;
        return visit(module, info.getCreator(), name) ? WalkAnswer::Count : WalkAnswer::Stop;
    });
}

void VManagedObject::UnloadVModule(const string& module, VRemoveItem& remover)
{
    walkEntries([&](VCreatorBaseInfo& info, const string& /*name*/) {
        if (info.ModuleName != module) return WalkAnswer::PassOver;
        remover.removeItem(info.ModuleName, info.getCreator());
        info.Creator = RefPtr<VManagedObject>();
        return WalkAnswer::Count;
    });
}

} // namespace Quorl
