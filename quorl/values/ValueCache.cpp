#include <quorl/values/ValueCache.h>

#include <quorl/foundation/SteadyChange.h>
#include <quorl/foundation/SteadyWalk.h>
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
    Tolmen::enterSteadily(*this, slot, value ? value->copy() : RefPtr<VValueBase>());
}

bool ValueCache::hasChanged(const WeakPtr<VSlotContainer>& container,
                            const RefPtr<ValuePool>& pool) const
{
    const auto isAsBefore = [&](const WeakPtr<VSlot>& slot, const RefPtr<VValueBase>& snapshot) {
        if (!slot) return true;
        if (!snapshot) return false; // asked before the container: deliberate, for any container
        if (!(slot->Owner == container)) return true;
        const RefPtr<VValueBase> value = slot->getValueBase(pool);
        if (value.referer == nullptr) return false;
        return !value || !snapshot->isDifferentFrom(value);
    };
    return !Tolmen::walkSteadily(*this, isAsBefore);
}

bool ValueCache::hasChanged(const WeakPtr<VSlotContainer>& container, const Tolmen::Intercube& cube,
                            const RefPtr<ValuePool>& pool)
{
    const RefPtr<ValueCache> cache = cube.findInterface(typeid(ValueCache));
    return cache && cache->hasChanged(container, pool);
}

} // namespace Quorl
