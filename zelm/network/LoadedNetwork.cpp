#include "LoadedNetwork.h"

#include <quorl/objects/VObject.h>
#include <quorl/values/VValueBase.h>
#include <quorl/values/ValuePool.h>

#include <algorithm>

namespace Zelm
{

using Quorl::ValuePool;
using Quorl::VObject;

LoadedNetwork::~LoadedNetwork() = default;

RefPtr<LoadedNetwork> LoadedNetwork::of(const RefPtr<VObject>& object)
{
    return object ? object->findInterface(typeid(LoadedNetwork)) : RefPtr<InterfaceBase>();
}

RefPtr<VObject> LoadedNetwork::object(const std::string& name) const
{
    const auto entry =
        std::ranges::find(objects, name, [](const auto& pair) { return pair.first; });
    return entry == objects.end() ? RefPtr<VObject>() : RefPtr<VObject>(entry->second);
}

RefPtr<ValuePool> LoadedNetwork::context(const std::string& name) const
{
    const auto pool =
        std::ranges::find(contexts, name, [](const auto& live) { return live->name; });
    return pool == contexts.end() ? RefPtr<ValuePool>() : *pool;
}

std::vector<RefPtr<VObject>> LoadedNetwork::liveObjects() const
{
    std::vector<RefPtr<VObject>> live;
    for (const auto& [name, object] : objects)
        if (const RefPtr<VObject> held = object) live.push_back(held);
    return live;
}

void LoadedNetwork::remove()
{
    const RefPtr<LoadedNetwork> myself(this); // the objects own it
    for (std::size_t at = 0; at < objects.size(); ++at)
        if (const RefPtr<VObject> object = objects[at].second) object->remove();
}

} // namespace Zelm
