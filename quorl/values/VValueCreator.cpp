#include <quorl/values/VValueCreator.h>

#include <quorl/values/VValueBase.h>

#include <map>

namespace Tolmen
{
template class ReferenceBase<Quorl::VValueCreator>;
} // namespace Tolmen

namespace Quorl
{
namespace
{

using CreatorTable = std::map<string, WeakPtr<VValueCreator>>;

CreatorTable& theCreators()
{
    static auto& creators = *new CreatorTable; // asked until the very end
    return creators;
}

} // namespace

VValueCreator::~VValueCreator() = default;

void VValueCreator::registerCreator(const WeakPtr<VValueCreator>& creator, const string& type)
{
    theCreators()[type] = creator;
}

RefPtr<VValueBase> VValueCreator::create(const string& type, const string& text, bool& ok)
{
    const auto entry = theCreators().find(type);
    if (entry == theCreators().end()) return {};
    const WeakPtr<VValueCreator> creator = entry->second; // a static; owning it would end it
    if (!creator)
    {
        ok = false;
        return {};
    }
    return creator->create(text, ok);
}

} // namespace Quorl
