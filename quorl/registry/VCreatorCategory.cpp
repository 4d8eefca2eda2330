#include <quorl/registry/VCreatorCategory.h>

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
    std::list<WeakPtr<VCreatorBase>> creators; // grows only, so that walks stay valid
};

std::map<string, CreatorList>& CategoryInfo()
{
    static std::map<string, CreatorList> table;
    return table;
}

} // namespace

VCreatorCategory::Iterator::~Iterator() = default;

void VCreatorCategory::addCreator(const WeakPtr<VCreatorBase>& creator)
{
    if (!creator) return;
    const string& category = creator->element[VCreatorPropertyElements::Category];
    CategoryInfo()[category].creators.push_back(creator);
}

int VCreatorCategory::iterate(const string& category, Iterator& visitor)
{
    const auto entry = CategoryInfo().find(category);
    if (entry == CategoryInfo().end()) return -1;
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
