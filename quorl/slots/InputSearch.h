#pragma once

#include <quorl/slots/VParameter.h>
#include <quorl/slots/VSlot.h>
#include <quorl/slots/VSlotTables.h>

#include <typeinfo>

namespace Quorl
{

/// Whether a slot shows a parameter of a type.
inline bool isOfType(const VSlot& slot, const std::type_info& type)
{
    return slot.Parameter && slot.getType() == type;
}

/// Goes through the live inputs by level, then by name, until `stop` answers true.
template <class Stop>
void searchInputs(const VSlotTables& tables, Stop&& stop)
{
    for (const auto& [level, slots] : tables.Inputs)
        for (const RefPtr<VSlot>& slot : slots)
            if (slot && stop(slot, level)) return;
}

/// The same; inputs may come and go meanwhile. Levels never go.
template <class Stop>
void searchChangingInputs(const VSlotTables& tables, Stop&& stop)
{
    for (const auto& [level, slots] : tables.Inputs)
        for (auto next = slots.begin(); next != slots.end();)
        {
            const RefPtr<VSlot> slot = *next;
            if (slot && stop(slot, level)) return;
            next = slots.upper_bound(slot);
        }
}

} // namespace Quorl
