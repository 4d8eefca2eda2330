#include <quorl/slots/VSlot.h>

#include <quorl/objects/VObject.h> // an object makes the inputs of its slots
#include <quorl/registry/VCreatorBase.h>
#include <quorl/registry/VManagedObject.h>
#include <quorl/slots/VInputClass.h>
#include <quorl/slots/VParameter.h>
#include <quorl/slots/VSlotContainer.h>
#include <quorl/values/VValueBase.h>
#include <quorl/values/ValueNotifier.h>
#include <quorl/values/ValuePool.h>

#include <cstdio>

namespace Tolmen
{
template class ReferenceBase<Quorl::VSlot>;
} // namespace Tolmen

namespace Quorl
{

VSlot::VSlot() : Unbound(true) {}

VSlot::VSlot(VSlotContainer* owner, const RefPtr<VParameter>& parameter, const string& name,
             const string& member)
    : Owner(owner), Parameter(parameter), Name(name), Member(member)
{
    if (owner) return;
    self.Speak("VSlot::VSlot()", "");
    std::printf("SLOTNAME: N=%s M=%s\n", name.c_str(), member.c_str());
}

VSlot::~VSlot()
{
    if (!Parameter) return;
    if (const WeakPtr<VSlotContainer>& source = Parameter->source)
        source->taintConnectionValidators(source->ID);
}

bool VSlot::assignParameter(const RefPtr<VParameter>& parameter, const string& member)
{
    if (parameter == Parameter && member == Member) return false;
    const RefPtr<VSlot> held = Tolmen::heldIfOwned(self); // by the former parameter, perhaps
    Member = member;
    Parameter = parameter;
    ConnectionTime.touch();
    if (Parameter && Parameter->source)
        if (const RefPtr<VSlot> output = Parameter->source->findOutputSlot(Parameter))
            output->ConnectionTime.touch();
    return true;
}

bool VSlot::attachSource(const RefPtr<VParameter>& parameter)
{
    if (!self || !parameter) return false;
    return VSlotContainer::attachParameter(parameter, this, "");
}

bool VSlot::attachSlot(const RefPtr<VSlot>& other)
{
    return other && attachSource(other->Parameter);
}

const Ageable& VSlot::age(const RefPtr<ValuePool>& pool) const
{
    const RefPtr<VValueBase> value = getValueBase(pool);
    return value && value->age() > ConnectionTime ? value->age() : ConnectionTime;
}

const Ageable& VSlot::ValueAge(const RefPtr<ValuePool>& pool) const
{
    if (!Parameter) return Ageable::Ooooold;
    if (Parameter->isLocal())
        if (const RefPtr<VValueBase> value = Parameter->getLocalValue(pool, Member, false))
            return value->age();
    const RefPtr<VValueBase>& shared = Parameter->defaultValue;
    return shared ? shared->age() : Ageable::Ooooold;
}

RefPtr<VValueBase> VSlot::getValueBase(const RefPtr<ValuePool>& pool) const
{
    return Parameter ? Parameter->getValue(pool, Member) : RefPtr<VValueBase>();
}

bool VSlot::isNew(const RefPtr<ValuePool>& pool) const
{
    return Owner && age(pool) > Owner->age(pool);
}

const std::type_info& VSlot::getType() const
{
    return Parameter ? Parameter->getType(Member) : typeid(void);
}

RefPtr<VManagedObject> VSlot::getSource() const
{
    return Parameter ? RefPtr<VManagedObject>(Parameter->source) : RefPtr<VManagedObject>();
}

RefPtr<VSlotContainer> VSlot::getExternalOwner() const
{
    if (!Parameter || !Parameter->source || Parameter->source == Owner) return {};
    return Owner;
}

void VSlot::setClass(const string& inputClassName)
{
    InputClass = VInputClass::getClass(inputClassName);
}

WeakPtr<VManagedObjectBase> VSlot::getVObjectPtr(VObject* object)
{
    return object ? WeakPtr<VManagedObjectBase>(object) : WeakPtr<VManagedObjectBase>();
}

RefPtr<VObject> VSlot::createInput(const WeakPtr<VInputCreatorBase>& inputCreator,
                                   const string& name, Tolmen::Intercube& context)
{
    const RefPtr<VObject> object = Owner;
    const WeakPtr<VCreatorBase> creator = inputCreator;
    if (!object || !creator) return {};
    return object->createInput(creator, this, name, context);
}

} // namespace Quorl
