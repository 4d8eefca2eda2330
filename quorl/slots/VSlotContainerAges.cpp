#include <quorl/objects/VObjectAge.h> // ages of a context
#include <quorl/slots/VParameter.h>
#include <quorl/slots/VSlot.h>
#include <quorl/slots/VSlotContainer.h>
#include <quorl/slots/VSlotTables.h>
#include <quorl/values/ValueCache.h>
#include <quorl/values/ValuePool.h>

#include <cstdarg>

namespace Quorl
{

const Ageable& VSlotContainer::age(const RefPtr<ValuePool>& pool) const
{
    // A question enters a container into the pool's ages, too.
    return const_cast<VSlotContainer*>(this)->age(pool);
}

Ageable& VSlotContainer::age(const RefPtr<ValuePool>& pool)
{
    return pool ? pool->ObjectAgePool()(*this) : LocalAge;
}

const Ageable& VSlotContainer::ConnectionAge() const
{
    return Slots->InputSetAge;
}

void VSlotContainer::touchInputSetAge() const
{
    Slots->InputSetAge.touch();
}

Ageable VSlotContainer::youngestInput(const RefPtr<ValuePool>& pool, bool includesCached) const
{
    Ageable youngest(0);
    for (const auto& [level, slots] : Slots->Inputs)
        for (const RefPtr<VSlot>& slot : slots)
        {
            if (!slot || !slot->Parameter || (slot->Cached && !includesCached)) continue;
            raiseAge(youngest, slot->age(pool));
            if (slot->Parameter->source) raiseAge(youngest, slot->Parameter->source->age(pool));
        }
    return youngest;
}

Ageable VSlotContainer::YoungestInput(const RefPtr<ValuePool>& pool) const
{
    return youngestInput(pool, true);
}

Ageable VSlotContainer::YoungestUncachedInput(const RefPtr<ValuePool>& pool) const
{
    return youngestInput(pool, false);
}

Ageable VSlotContainer::YoungestOutput(const RefPtr<ValuePool>& pool) const
{
    Ageable youngest(0);
    for (const auto& [type, slot] : Slots->Outputs)
        if (slot) raiseAge(youngest, slot->age(pool));
    return youngest;
}

bool VSlotContainer::HasYoungerInput(const RefPtr<ValuePool>& pool, int /*expertLevel*/) const
{
    return age(pool) < YoungestInput(pool);
}

bool VSlotContainer::isNewlyConnected(const RefPtr<VParameter>& output,
                                      const RefPtr<ValuePool>& pool) const
{
    const RefPtr<VSlot> slot = findOutputSlot(output);
    return slot && age(pool) < slot->ConnectionTime;
}

bool VSlotContainer::isYounger(const RefPtr<VParameter>& output,
                               const RefPtr<ValuePool>& pool) const
{
    const RefPtr<VSlot> slot = findOutputSlot(output);
    return slot && slot->age(pool) > age(pool);
}

void VSlotContainer::findNewlyConnectedOutputs(const RefPtr<ValuePool>& pool,
                                               VSlotSet& result) const
{
    const Ageable& mine = age(pool);
    for (const auto& [type, slot] : Slots->Outputs)
        if (slot && slot->ConnectionTime > mine) result.insertSlot(slot, true);
}

bool VSlotContainer::hasNewlyConnectedOutputs(const RefPtr<ValuePool>& pool) const
{
    const Ageable& mine = age(pool);
    for (const auto& [type, slot] : Slots->Outputs)
        if (slot && slot->ConnectionTime > mine) return true;
    return false;
}

bool VSlotContainer::hasChanged(const RefPtr<VSlot>& slot, const RefPtr<ValuePool>& pool) const
{
    return slot && slot->age(pool) > age(pool);
}

bool VSlotContainer::hasChanged(const string& name, const RefPtr<ValuePool>& pool) const
{
    int level = 0;
    return hasChanged(getSlot(name, level), pool);
}

bool VSlotContainer::hasChanged(const RefPtr<ValuePool>& pool, int count, ...) const
{
    bool isChanged = false;
    std::va_list names;
    va_start(names, count);
    for (int i = 0; i < count && !isChanged; ++i)
        isChanged = hasChanged(string(va_arg(names, const char*)), pool);
    va_end(names);
    return isChanged;
}

bool VSlotContainer::hasChanged(RefPtr<ValuePool> pool, ...) const
{
    bool isChanged = false;
    std::va_list names;
    va_start(names, pool);
    while (const char* const name = isChanged ? nullptr : va_arg(names, const char*))
        isChanged = hasChanged(string(name), pool);
    va_end(names);
    return isChanged;
}

bool VSlotContainer::hasChangedSlots(const Tolmen::Intercube& context,
                                     const RefPtr<ValuePool>& pool) const
{
    return ValueCache::hasChanged(WeakPtr<VSlotContainer>(this), context, pool);
}

} // namespace Quorl
