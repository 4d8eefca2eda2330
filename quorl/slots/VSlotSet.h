#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>
#include <quorl/foundation/RefPtr.h>
#include <quorl/slots/VSlotIterator.h>

#include <set>

namespace Quorl
{

/// Orders slots by their names, byte by byte; a name stands before those that it is the head of. A
/// name alone can be looked up, too.
struct QUORL_API CompareSlotsByName
{
    using is_transparent = void;

    bool operator()(const RefPtr<VSlot>& left, const RefPtr<VSlot>& right) const;
    bool operator()(const RefPtr<VSlot>& left, const string& right) const;
    bool operator()(const string& left, const RefPtr<VSlot>& right) const;
};

/// A selection of slots, at most one of each name. Owns them.
class QUORL_API VSlotSet : public std::set<RefPtr<VSlot>, CompareSlotsByName>
{
public:
    VSlotSet();
    ~VSlotSet();

    /// \param replace whether a slot of the same name goes first.
    /// \return the slot; null if its name was there, or if it is dead.
    RefPtr<VSlot> insertSlot(const RefPtr<VSlot>& slot, bool replace);

    RefPtr<VSlot> findByName(const string& name) const; ///< null if there is none
    RefPtr<VSlot> findFirstParameter(const RefPtr<VParameter>& parameter) const;
    bool contains(const RefPtr<VSlot>& slot) const; ///< this slot, not another of its name
    bool removeSlot(const string& name);

    /// Visits the live slots in the order of names, each with the level that is given here. Slots
    /// may come and go meanwhile: those that have gone are passed over, those that come are not
    /// reached. The set itself must last.
    /// \return the number of visits that answered true.
    int iterate(int expertLevel, VSlotIterator& visitor);

private:
    bool stillHas(const RefPtr<VSlot>& slot, bool isOrdered) const;
};

} // namespace Quorl
