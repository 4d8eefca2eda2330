#include <quorl/values/ValuePool.h>

#include <quorl/foundation/AddressString.h>
#include <quorl/foundation/FindOrNull.h>
#include <quorl/foundation/SteadyWalk.h>
#include <quorl/foundation/VGlobals.h>
#include <quorl/objects/VObjectAge.h> // completes the record of a pool, which keeps the ages
#include <quorl/values/VValueBase.h>
#include <quorl/values/ValueNotifier.h>
#include <quorl/values/ValueNotifierList.h>
#include <quorl/values/ValuePoolCreator.h>

#include <functional>
#include <map>
#include <utility>

namespace Tolmen
{
template class ReferenceBase<Quorl::ValuePool>;
} // namespace Tolmen

namespace Quorl
{

namespace
{

// Compares handles of any kind, so that none is made to look something up.
using Variables = std::map<WeakPtr<ValueNotifierList>, RefPtr<VValueBase>, std::less<>>;

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

/// Values may ask for this pool, and put others there, while they end.
ValuePool::~ValuePool()
{
    while (data_) const auto ended = std::exchange(data_, nullptr);
}

ValuePool::Data& ValuePool::data()
{
    if (!data_) data_ = std::make_shared<Data>();
    return *data_;
}

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
    const auto& creators = globals.poolCreators; // which a creator may leave
    for (auto next = creators.begin(); next != creators.end();)
    {
        const RefPtr<ValuePoolCreator> creator = *next;
        const RefPtr<ValuePool> pool = creator ? creator->createPool(name) : RefPtr<ValuePool>();
        if (pool) return pool;
        next = creators.upper_bound(creator);
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
    const Tolmen::DynPtr<ValueNotifierList, ValueNotifierList>& found = key;
    return findVariable(found);
}

RefPtr<VValueBase>
ValuePool::findVariable(const Tolmen::DynPtr<ValueNotifierList, ValueNotifierList>& key) const
{
    return data_ ? Tolmen::findOrNull(data_->variables, key) : RefPtr<VValueBase>();
}

void ValuePool::createVariable(const WeakPtr<ValueNotifierList>& key,
                               const RefPtr<VValueBase>& value)
{
    RefPtr<VValueBase>& place = data().variables[key];
    const RefPtr<VValueBase> former = place; // ends when the table is whole
    place = value;
    Tolmen::Watch::variablesChange(key.referer);
}

void ValuePool::removeVariable(const WeakPtr<ValueNotifierList>& key)
{
    if (!data_) return;
    const auto former = data_->variables.extract(key); // ends when the table is whole
    Tolmen::Watch::variablesChange(key.referer);
}

bool ValuePool::registerValue(const string& valueName, const WeakPtr<VValueBase>& value)
{
    data().namedValues[valueName] = value;
    return true;
}

RefPtr<VValueBase> ValuePool::retrieveValue(const string& valueName) const
{
    if (!data_) return {};
    return Tolmen::findOrNull(data_->namedValues, valueName);
}

bool ValuePool::removeValue(const string& valueName)
{
    if (!data_) return false;
    data_->namedValues.erase(valueName);
    return true;
}

VObjectAge& ValuePool::ObjectAgePool()
{
    return data().objectAges;
}

void ValuePool::activate(const RefPtr<ValuePool>& old, const WeakPtr<ValueNotifier>& skip,
                         const ValueMap* changes) const
{
    if (old && old.referer == self.referer) return;
    const WeakPtr<ValuePool> me(this); // an observer may end both pools
    const std::shared_ptr<Data> present = data_;
    const std::shared_ptr<Data> before = old ? old->data_ : nullptr;
    const auto fallBack = [&](const WeakPtr<ValueNotifierList>& key, const auto& /*variable*/) {
        if (!key || (me && findVariable(key))) return true;
        const RefPtr<VValueBase> fallback = key->DefaultValue(); // an observer may end the key
        key->notify(fallback, WeakPtr<ValuePool>(), skip, nullptr, changes);
        return true;
    };
    const auto tell = [&](const WeakPtr<ValueNotifierList>& key, const auto& variable) {
        if (key) key->notify(variable, me, skip, nullptr, changes);
        return true;
    };
    if (before) Tolmen::walkSteadily(before->variables, fallBack);
    if (present) Tolmen::walkSteadily(present->variables, tell);
}

} // namespace Quorl
