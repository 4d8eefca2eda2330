#include <quorl/values/ValuePool.h>

#include <quorl/foundation/AddressString.h>
#include <quorl/foundation/VGlobals.h>
#include <quorl/objects/VObjectAge.h> // completes the record of a pool, which keeps the ages
#include <quorl/values/VValueBase.h>
#include <quorl/values/ValueNotifier.h>
#include <quorl/values/ValueNotifierList.h>
#include <quorl/values/ValuePoolCreator.h>

#include <map>

namespace Tolmen
{
template class ReferenceBase<Quorl::ValuePool>;
} // namespace Tolmen

namespace Quorl
{

namespace
{

using Variables = std::map<WeakPtr<ValueNotifierList>, RefPtr<VValueBase>>;

/// Visits the variables with a live key, in order. The visitor may add and remove any.
template <class Visit>
void forEachVariable(const Variables& variables, Visit&& visit)
{
    for (auto entry = variables.begin(); entry != variables.end();)
    {
        const WeakPtr<ValueNotifierList> key = entry->first;
        const RefPtr<VValueBase> variable = entry->second;
        if (key) visit(key, variable);
        entry = variables.upper_bound(key);
    }
}

} // namespace

struct ValuePool::Data
{
    Variables variables;
    std::map<string, WeakPtr<VValueBase>> namedValues;
    VObjectAge objectAges;
};

ValuePool::iterator::~iterator() = default;

ValuePool::ValuePool()
    : name("[invalid:" + Tolmen::to_address_string(self.referer) + "]"), data_(new Data)
{
}

ValuePool::ValuePool(const string& givenName) : data_(new Data)
{
    setName(givenName);
}

ValuePool::~ValuePool() = default;

bool ValuePool::setName(const string& newName)
{
    name = newName;
    VGlobals::theGlobals().pools[name] = WeakPtr<ValuePool>(this);
    return true;
}

RefPtr<ValuePool> ValuePool::getValuePool(const string& name)
{
    const VGlobals& globals = VGlobals::theGlobals();
    const auto entry = globals.pools.find(name);
    if (entry != globals.pools.end()) return entry->second;
    for (const RefPtr<ValuePoolCreator>& creator : globals.poolCreators)
    {
        if (!creator) continue;
        if (const RefPtr<ValuePool> pool = creator->createPool(name)) return pool;
    }
    return {};
}

int ValuePool::iterate(iterator& visitor)
{
    int count = 0;
    for (const auto& [name, pool] : VGlobals::theGlobals().pools)
    {
        if (!pool) continue;
        if (!visitor.apply(name, pool)) break;
        ++count;
    }
    return count;
}

RefPtr<VValueBase> ValuePool::findVariable(const WeakPtr<ValueNotifierList>& key) const
{
    const auto variable = data_->variables.find(key);
    return variable == data_->variables.end() ? RefPtr<VValueBase>() : variable->second;
}

void ValuePool::createVariable(const WeakPtr<ValueNotifierList>& key,
                               const RefPtr<VValueBase>& value)
{
    data_->variables[key] = value;
}

void ValuePool::removeVariable(const WeakPtr<ValueNotifierList>& key)
{
    data_->variables.erase(key);
}

bool ValuePool::registerValue(const string& valueName, const WeakPtr<VValueBase>& value)
{
    data_->namedValues[valueName] = value;
    return true;
}

RefPtr<VValueBase> ValuePool::retrieveValue(const string& valueName) const
{
    const auto entry = data_->namedValues.find(valueName);
    return entry == data_->namedValues.end() ? RefPtr<VValueBase>() : entry->second;
}

bool ValuePool::removeValue(const string& valueName)
{
    data_->namedValues.erase(valueName);
    return true;
}

VObjectAge& ValuePool::ObjectAgePool()
{
    return data_->objectAges;
}

bool ValuePool::holdsLiveVariable(const WeakPtr<ValueNotifierList>& key) const
{
    return static_cast<bool>(findVariable(key));
}

void ValuePool::activate(const RefPtr<ValuePool>& old, const WeakPtr<ValueNotifier>& skip,
                         const ValueMap* changes) const
{
    if (old && old.referer == self.referer) return;
    if (old)
        forEachVariable(old->data_->variables, [&](const auto& key, const auto& /*variable*/) {
            if (holdsLiveVariable(key)) return;
            const RefPtr<VValueBase> fallback = key->DefaultValue(); // an observer may end the key
            key->notify(fallback, WeakPtr<ValuePool>(), skip, nullptr, changes);
        });
    forEachVariable(data_->variables, [&](const auto& key, const auto& variable) {
        key->notify(variable, WeakPtr<ValuePool>(this), skip, nullptr, changes);
    });
}

} // namespace Quorl
