#include <quorl/slots/VConnectable.h>

#include <quorl/objects/VObject.h> // objects are searched for outputs
#include <quorl/slots/InputSearch.h>
#include <quorl/slots/VSlotIterator.h>
#include <quorl/values/VValueBase.h>

#include <cstdio>
#include <typeinfo>

namespace Quorl
{
namespace
{

/// Gives an interface to the first input of its type.
class GiveInterface final : public VSlotIterator
{
public:
    explicit GiveInterface(const RefPtr<Tolmen::InterfaceBase>& interface) : interface_(interface)
    {
    }

    bool apply(const RefPtr<VSlot>& slot, int /*expertLevel*/) override
    {
        if (!isOfType(*slot, interface_->getInterfaceDomain())) return true;
        const RefPtr<VParameter> parameter = slot->Parameter;
        if (const RefPtr<VValueBase> value = parameter->DefaultValue())
            value->setInterface(interface_);
        parameter->touchValue({});
        slot->assignParameter(parameter, slot->Member);
        found = slot;
        return false;
    }

    RefPtr<VSlot> found;

private:
    const RefPtr<Tolmen::InterfaceBase> interface_;
};

} // namespace

VConnectable::VConnectable() = default;
VConnectable::~VConnectable() = default;

RefPtr<VSlot> VConnectable::Connect(const RefPtr<VParameter>& parameter)
{
    if (!parameter) return {};
    const RefPtr<VSlotContainer> held = heldForVisits();
    const RefPtr<VSlot> slot = findReplaceableSlot(parameter);
    if (!slot)
    {
        std::puts("nothing...");
        return {};
    }
    attachParameter(parameter, slot, ""); // Deliberate: an objection changes nothing below.
    adjustConnections(slot, parameter);
    std::fflush(stdout);
    return slot;
}

VSlotContainer::AttachErrorCode VConnectable::attach(const string& input, VSlotContainer& source,
                                                     const string& output)
{
    int level = 0;
    const RefPtr<VSlot> place = getSlot(input, level);
    if (!place) return AttachDestinationNotFound;
    if (!place->Parameter) return AttachNullDestination;

    int sourceLevel = 0;
    if (const RefPtr<VSlot> shared = source.getSlot(output, sourceLevel);
        shared && isOfType(*shared, place->getType()))
    {
        if (!allowParameterReplacement(shared->Parameter, place->Parameter, input, level))
            return AttachNotAllowed;
        attachParameter(shared->Parameter, place, shared->Member);
        return AttachOk;
    }

    const RefPtr<VSlot> offered =
        source.getImplementationSlot(place->getType(), output, place->Member);
    if (!offered) return AttachSourceNotFound;
    if (!offered->Parameter) return AttachNullSource;
    attachParameter(offered->Parameter, place, offered->Member);
    return AttachToOutput;
}

VSlotContainer::AttachErrorCode VConnectable::attach(const RefPtr<VParameter>& destination,
                                                     const RefPtr<VSlotContainer>& source,
                                                     const string& parameterName,
                                                     const string& member)
{
    const RefPtr<VParameter> shared =
        source ? source->getParameter(parameterName) : RefPtr<VParameter>();
    return VSlotContainer::attach(destination, shared, member);
}

VSlotContainer::AttachErrorCode
VConnectable::attachUniqueObject(const RefPtr<VParameter>& parameter,
                                 const RefPtr<VCreationPreferences>& preferences, bool unique)
{
    if (!parameter) return AttachSourceNotFound;
    return VSlotContainer::attach(
        parameter, VObject::findUniqueOutputObject(parameter->getType(), preferences, unique), "");
}

VSlotContainer::AttachErrorCode
VConnectable::attachUniqueObject(const RefPtr<VSlot>& slot,
                                 const RefPtr<VCreationPreferences>& preferences, bool unique)
{
    return slot ? attachUniqueObject(slot->Parameter, preferences, unique) : AttachNullSource;
}

VSlotContainer::AttachErrorCode VConnectable::detachSlot(const RefPtr<VSlot>& slot)
{
    if (!slot) return AttachDestinationNotFound;
    if (!slot->Parameter) return AttachNullDestination;
    const RefPtr<VParameter> copied = slot->Parameter->copy();
    if (!copied) return AttachNullSource;
    attachParameter(copied, slot, "");
    return AttachOk;
}

RefPtr<VSlot> VConnectable::ConnectInterface(const RefPtr<VSlotContainer>& container,
                                             const RefPtr<Tolmen::InterfaceBase>& interface)
{
    if (!container || !interface) return {};
    GiveInterface walk(interface);
    container->iterateParameters(kAllLevels, walk);
    return walk.found;
}

bool VConnectable::setObjectAsChild(const RefPtr<VConnectable>& /*child*/, const string& /*name*/)
{
    return true;
}

RefPtr<VParameter> VConnectable::CreatedFilteredConnection(const RefPtr<VParameter>& /*parameter*/)
{
    return {};
}

void VConnectable::adjustConnections(const RefPtr<VSlot>& /*slot*/,
                                     const RefPtr<VParameter>& /*parameter*/)
{
}

} // namespace Quorl
