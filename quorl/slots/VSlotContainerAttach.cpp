#include <quorl/services/VActionNotifier.h>
#include <quorl/slots/InputSearch.h>
#include <quorl/slots/VSlotContainer.h>
#include <quorl/slots/VSlotIterator.h>

#include <cstdio>

namespace Quorl
{
namespace
{

const std::type_info& typeOf(const RefPtr<VParameter>& parameter)
{
    return parameter ? parameter->getType() : typeid(void);
}

/// Finds the first input whose parameter the offered one can take the place of.
class FindReplaceable final : public VSlotIterator
{
public:
    FindReplaceable(const RefPtr<VParameter>& offered, VSlotContainer& container)
        : offered_(offered), container_(container)
    {
    }

    bool apply(const RefPtr<VSlot>& slot, int expertLevel) override
    {
        if (!fits(*slot, expertLevel)) return true;
        found = slot;
        return false;
    }

    RefPtr<VSlot> found;

private:
    bool fits(const VSlot& slot, int expertLevel)
    {
        return isOfType(slot, offered_->getType()) &&
               slot.Parameter->ConnectibilityMismatch(*offered_) == 0 &&
               container_.allowParameterReplacement(offered_, slot.Parameter, slot.Name,
                                                    expertLevel);
    }

    const RefPtr<VParameter> offered_;
    VSlotContainer& container_;
};

} // namespace

string VSlotContainer::AttachErrorCodeMessage(int code)
{
    switch (code)
    {
        case AttachOk: return "Attachment ok";
        case AttachNotAllowed: return "Attachment not allowed";
        case AttachToOutput: return "Attachment done to output parameter";
        case AttachSourceNotFound:
            return "Attachment not possible because source parameter not found";
        case AttachNullDestination:
            return "Attachment not possible because invalid (null) destination parameter";
        case AttachNullSource:
            return "Attachment not possible because invalid (null) source parameter";
        case AttachDestinationNotFound:
            return "Attachment not possible because destination parameter not found";
        case AttachIncompatibleTypes:
            return "Attachment not possible because incompatible parameter types";
        default: return "";
    }
}

bool VSlotContainer::attachParameter(const RefPtr<VParameter>& offered, const WeakPtr<VSlot>& place,
                                     const string& member)
{
    const RefPtr<VParameter> parameter = offered;
    const RefPtr<VSlot> slot = place;
    if (!slot) return false;
    const RefPtr<VSlotContainer> owner = slot->Owner;

    if (!VActionNotifier::AttachParameterPrefix(parameter, slot)) return false;
    if (!slot->assignParameter(parameter, member)) return true;
    if (owner)
    {
        owner->touchInputSetAge();
        owner->taintConnectionValidators(owner->ID);
    }
    VActionNotifier::AttachParameterPostfix(slot);
    return true;
}

VSlotContainer::AttachErrorCode VSlotContainer::attach(const RefPtr<VParameter>& destination,
                                                       const RefPtr<VParameter>& source,
                                                       const string& member)
{
    if (!source) return AttachSourceNotFound;
    if (destination == source) return AttachOk;
    if (source->getType(member) != typeOf(destination)) return AttachIncompatibleTypes;
    const RefPtr<VSlot> slot = findSlot(destination);
    if (!slot) return AttachDestinationNotFound;
    attachParameter(source, slot, member);
    return AttachOk;
}

bool VSlotContainer::allowParameterReplacement(const RefPtr<VParameter>& /*source*/,
                                               const RefPtr<VParameter>& /*destination*/,
                                               const string& /*name*/, int /*expertLevel*/)
{
    return true;
}

RefPtr<VSlot> VSlotContainer::findReplaceableSlot(const RefPtr<VParameter>& parameter)
{
    if (!parameter) return {};
    FindReplaceable search(parameter, *this);
    iterateParameters(kAllLevels, search);
    return search.found;
}

int VSlotContainer::connectSlots(const RefPtr<VSlotContainer>& given)
{
    const RefPtr<VSlotContainer> other = given;
    if (!other) return 0;
    const RefPtr<VSlotContainer> held = heldForVisits();
    int count = 0;
    const auto passOn = [&](const RefPtr<VSlot>& slot, const RefPtr<VSlot>& place, int level) {
        if (!place || !slot->Parameter || !isOfType(*place, slot->getType())) return;
        if (!other->allowParameterReplacement(slot->Parameter, place->Parameter, place->Name,
                                              level))
            return;
        attachParameter(slot->Parameter, place, place->Member);
        ++count;
    };
    searchChangingInputs(*Slots, [&](const RefPtr<VSlot>& slot, int) {
        if (!slot->Propagates) return false;
        for (const auto& [level, places] : other->Slots->Inputs)
            if (const auto place = places.find(slot->Name); place != places.end())
                passOn(slot, RefPtr<VSlot>(*place), level);
        return false;
    });
    std::printf("VConnectable.cpp: vobj->touch();\n");
    return count;
}

} // namespace Quorl
