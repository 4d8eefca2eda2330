#include <quorl/registry/VCreatorMap.h>

#include <quorl/foundation/AtCleanUp.h>
#include <quorl/registry/PriorityWalk.h>
#include <quorl/registry/VCreatorBaseInfo.h>

#include <cstdio>
#include <limits>

namespace Tolmen
{
template class ReferenceBase<Quorl::VCreatorMap>;
} // namespace Tolmen

namespace Quorl
{

VCreatorMap::VCreatorMap() = default;
VCreatorMap::~VCreatorMap() = default;

bool VCreatorMap::remove(const string& name)
{
    const string removed = name; // may be the name of the object that ends here
    const auto entry = find(removed);
    if (entry == end())
    {
        std::printf("Could not find %s...\n", removed.c_str());
        removePriority(removed);
        return false;
    }
    const RefPtr<VCreatorBaseInfo> info =
        entry->second; // ends the object when the tables are whole
    erase(entry);
    removePriority(removed);
    return true;
}

void VCreatorMap::addPriority(int priority, const string& name)
{
    const auto line = priorities_.emplace(priority, name);
    try
    {
        linesByName_.emplace(std::pair(name, priority), line);
    }
    catch (...)
    {
        priorities_.erase(line); // nobody would find it again
        throw;
    }
    for (PriorityWalk* const walk : walks_) walk->noteAdded(line);
}

void VCreatorMap::removePriority(const string& name)
{
    constexpr int kLowest = std::numeric_limits<int>::min();
    const auto first = linesByName_.lower_bound(std::pair(name, kLowest));
    if (first == linesByName_.end() || first->first.first != name) return;
    for (PriorityWalk* const walk : walks_) walk->leave(first->second);
    priorities_.erase(first->second);
    linesByName_.erase(first);
}

RefPtr<VManagedObjectBase> VCreatorMap::liveCreator(const string& name) const
{
    const auto entry = find(name);
    if (entry == end() || !entry->second || !entry->second->getCreator()) return {};
    return entry->second->getCreator();
}

namespace
{

/// At the end objects leave their domain one by one: what they ask of the registry while they end,
/// and what they take out of it, is whole.
void empty(const VCreatorMapTypes& domains)
{
    for (const auto& [type, domain] : domains)
        while (domain && !domain->empty()) domain->remove(domain->begin()->first);
}

} // namespace

VCreatorMapTypes& VCreatorTypes()
{
    static auto& domains = *new VCreatorMapTypes;
    static const Tolmen::AtCleanUp end([] { empty(domains); });
    return domains;
}

VCreatorMap* VCreators(const std::type_info& type)
{
    RefPtr<VCreatorMap>& domain = VCreatorTypes()[type];
    if (!domain) domain = new VCreatorMap;
    return domain.rawptr();
}

} // namespace Quorl
