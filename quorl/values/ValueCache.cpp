#include <quorl/values/ValueCache.h>

#include <quorl/slots/VSlot.h>
#include <quorl/slots/VSlotContainer.h>
#include <quorl/values/VValueBase.h>

namespace Quorl
{

ValueCache::ValueCache() = default;
ValueCache::~ValueCache() = default;

ValueCache* ValueCache::getValueCache(Tolmen::Intercube& cube)
{
    RefPtr<ValueCache> cache = cube.findInterface(typeid(ValueCache));
    if (!cache)
    {
        cache = new ValueCache;
        cube.addInterface(cache);
    }
    return cache.rawptr();
}

void ValueCache::consider(const WeakPtr<VSlot>& slot, const RefPtr<ValuePool>& pool)
{
    if (!slot) return;
    const RefPtr<VValueBase> value = slot->getValueBase(pool);
    (*this)[slot] = value ? value->copy() : RefPtr<VValueBase>();
}

bool ValueCache::hasChanged(const WeakPtr<VSlotContainer>& container,
                            const RefPtr<ValuePool>& pool) const
{
    for (const auto& [slot, snapshot] : *this)
    {
        if (!slot) continue;
        if (!snapshot) return true; // asked before the container: deliberate, for any container
        if (!(slot->Owner == container)) continue;
        const RefPtr<VValueBase> value = slot->getValueBase(pool);
        if (value.referer == nullptr) return true;
        if (value && snapshot->isDifferentFrom(value)) return true;
    }
    return false;
}

bool ValueCache::hasChanged(const WeakPtr<VSlotContainer>& container, const Tolmen::Intercube& cube,
                            const RefPtr<ValuePool>& pool)
{
    const RefPtr<ValueCache> cache = cube.findInterface(typeid(ValueCache));
    return cache && cache->hasChanged(container, pool);
}

} // namespace Quorl
