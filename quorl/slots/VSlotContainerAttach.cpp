#include <quorl/services/VActionNotifier.h>
#include <quorl/slots/VParameter.h>
#include <quorl/slots/VSlot.h>
#include <quorl/slots/VSlotContainer.h>
#include <quorl/slots/VSlotTables.h>

#include <cstdio>

namespace Quorl
{
namespace
{

const std::type_info& typeOf(const RefPtr<VParameter>& parameter)
{
    return parameter ? parameter->getType() : typeid(void);
}

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

int VSlotContainer::connectSlots(const RefPtr<VSlotContainer>& other)
{
    if (!other) return 0;
    int count = 0;
    const auto passOn = [&](const RefPtr<VSlot>& slot) {
        for (const auto& [level, places] : other->Slots->Inputs)
        {
            const auto place = places.find(slot->Name);
            if (place == places.end() || !*place || !(*place)->Parameter) continue;
            if ((*place)->getType() != slot->getType()) continue;
            if (!other->allowParameterReplacement(slot->Parameter, (*place)->Parameter,
                                                  (*place)->Name, level))
                continue;
            attachParameter(slot->Parameter, *place, (*place)->Member);
            ++count;
        }
    };
    for (const auto& [level, slots] : Slots->Inputs)
        for (const RefPtr<VSlot>& slot : slots)
            if (slot && slot->Propagates && slot->Parameter) passOn(slot);
    std::printf("VConnectable.cpp: vobj->touch();\n");
    return count;
}

} // namespace Quorl
