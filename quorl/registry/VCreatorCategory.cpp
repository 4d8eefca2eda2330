#include <quorl/registry/VCreatorCategory.h>

#include <quorl/foundation/DeadEntries.h>
#include <quorl/registry/VCreatorBase.h>

#include <list>
#include <map>

namespace Quorl
{
namespace
{

struct CreatorList
{
    VCreatorPropertyBase properties;
    std::list<WeakPtr<VCreatorBase>> creators; // in the order of registration
    Tolmen::DeadEntries dead;
};

std::map<string, CreatorList>& CategoryInfo()
{
    static auto& table = *new std::map<string, CreatorList>; // asked until the very end
    return table;
}

} // namespace

VCreatorCategory::Iterator::~Iterator() = default;

void VCreatorCategory::addCreator(const WeakPtr<VCreatorBase>& creator)
{
    if (!creator) return;
    const string& category = creator->element[VCreatorPropertyElements::Category];
    CreatorList& list = CategoryInfo()[category];
    list.dead.takeOut(list.creators, [](const WeakPtr<VCreatorBase>& entry) { return !entry; });
    list.creators.push_back(creator);
}

int VCreatorCategory::iterate(const string& category, Iterator& visitor)
{
    const auto entry = CategoryInfo().find(category);
    if (entry == CategoryInfo().end()) return -1;
    const Tolmen::DeadEntries::Walk walk(entry->second.dead);
    int count = 0;
    for (const WeakPtr<VCreatorBase>& creator : entry->second.creators)
    {
        if (!creator) continue;
        if (!visitor.apply(creator)) break;
        ++count;
    }
    return count;
}

VCreatorPropertyBase& VCreatorCategory::getProperties(const string& category)
{
    return CategoryInfo()[category].properties;
}

} // namespace Quorl
