#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>
#include <quorl/foundation/Intercube.h>
#include <quorl/foundation/Interface.h>
#include <quorl/foundation/RefPtr.h>

#include <map>

namespace Quorl
{

/// Snapshots of the values of some slots, so that an object can ask later whether any of them
/// really differs, whatever the ages say: a value that was touched without a new datum has not
/// changed. Usually sits in the cube that carries the state of an object's computation.
class QUORL_API ValueCache : public Tolmen::Interface<ValueCache>,
                             public std::map<WeakPtr<VSlot>, RefPtr<VValueBase>>
{
public:
    ValueCache();
    ~ValueCache() override;

    /// The cache of a cube, which is given one if it has none alive. The cube owns it.
    static ValueCache* getValueCache(Tolmen::Intercube& cube);

    /// Takes a snapshot of what the slot shows in the pool, in place of an earlier one; null if it
    /// shows no value. Nothing happens for a dead slot.
    void consider(const WeakPtr<VSlot>& slot, const RefPtr<ValuePool>& pool);

    /// Whether a slot of `container` shows another datum than when it was considered, or none. A
    /// slot that had no value when it was considered counts as changed for any container.
    bool hasChanged(const WeakPtr<VSlotContainer>& container, const RefPtr<ValuePool>& pool) const;

    /// The same for the cache of a cube; false if that has none alive.
    static bool hasChanged(const WeakPtr<VSlotContainer>& container, const Tolmen::Intercube& cube,
                           const RefPtr<ValuePool>& pool);
};

} // namespace Quorl
