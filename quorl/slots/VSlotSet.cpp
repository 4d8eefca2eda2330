#include <quorl/slots/VSlotSet.h>

#include <quorl/slots/VParameter.h>
#include <quorl/slots/VSlot.h>

#include <algorithm>
#include <utility>
#include <vector>

namespace Quorl
{
namespace
{

const string& nameOf(const RefPtr<VSlot>& slot)
{
    static const string none;
    return slot ? slot->Name : none;
}

} // namespace

bool CompareSlotsByName::operator()(const RefPtr<VSlot>& left, const RefPtr<VSlot>& right) const
{
    return nameOf(left) < nameOf(right);
}

bool CompareSlotsByName::operator()(const RefPtr<VSlot>& left, const string& right) const
{
    return nameOf(left) < right;
}

bool CompareSlotsByName::operator()(const string& left, const RefPtr<VSlot>& right) const
{
    return left < nameOf(right);
}

VSlotSet::VSlotSet() = default;
VSlotSet::~VSlotSet() = default;

RefPtr<VSlot> VSlotSet::insertSlot(const RefPtr<VSlot>& slot, bool replace)
{
    if (!slot) return {};
    const RefPtr<VSlot> held = slot; // it may be the one of this set that is replaced
    const auto [place, isNew] = insert(held);
    if (isNew) return held;
    if (!replace) return {};
    node_type entry = extract(place);
    const RefPtr<VSlot> former = std::exchange(entry.value(), held); // ends behind the insertion
    insert(std::move(entry));
    return held;
}

RefPtr<VSlot> VSlotSet::findByName(const string& name) const
{
    const auto found = find(name);
    return found == end() ? RefPtr<VSlot>() : *found;
}

RefPtr<VSlot> VSlotSet::findFirstParameter(const RefPtr<VParameter>& parameter) const
{
    for (const RefPtr<VSlot>& slot : *this)
        if (slot && slot->Parameter == parameter) return slot;
    return {};
}

bool VSlotSet::contains(const RefPtr<VSlot>& slot) const
{
    const auto found = find(slot);
    return found != end() && *found == slot;
}

bool VSlotSet::removeSlot(const string& name)
{
    const auto found = find(name);
    if (found == end()) return false;
    const node_type ended = extract(found);
    return true;
}

/// \param isOrdered false if a slot has ended behind the set's back: it has no name any more, and
/// may hide others from a search by name.
bool VSlotSet::stillHas(const RefPtr<VSlot>& slot, bool isOrdered) const
{
    return contains(slot) || (!isOrdered && std::ranges::find(*this, slot) != end());
}

int VSlotSet::iterate(int expertLevel, VSlotIterator& visitor)
{
    const std::vector<RefPtr<VSlot>> slots(begin(), end());
    const bool isOrdered = std::ranges::all_of(slots, [](const auto& slot) { return slot; });
    int count = 0;
    for (const RefPtr<VSlot>& slot : slots)
    {
        if (!slot || !stillHas(slot, isOrdered)) continue;
        if (!visitor.apply(slot, expertLevel)) break;
        ++count;
    }
    return count;
}

} // namespace Quorl
