#include <quorl/objects/VObject.h>

#include <quorl/services/VActionNotifier.h>
#include <quorl/slots/VSlot.h>

#include <cstdio>

namespace Quorl
{

template class VManagedDomainObject<VObject>;

VObject::ExecutionStatus::ExecutionStatus(unsigned statusNumber, const string& message)
    : status(statusNumber), text(message)
{
}

VObject::ExecutionStatus::~ExecutionStatus() = default;

VObject::VObject(const string& wantedName, int givenPriority,
                 const RefPtr<VCreationPreferences>& preferences)
    : VManagedDomainObject<VObject>(wantedName, givenPriority), CreationPreferences(preferences)
{
    insert(wantedName, givenPriority);
}

VObject::~VObject() = default;

string VObject::CreateParameterName(const string& parameterName) const
{
    return getName() + "." + parameterName;
}

void VObject::remove()
{
    const string leaving = getName(); // this object may end together with its entry
    VActionNotifier::VObjectDeletion(leaving);
    VManagedObject::remove();
}

bool VObject::remove(const string& objectName)
{
    std::puts("**WARNING** VObject::remove(const string&s): for some yet unknown reason this "
              "function is not working.");
    if (!VManagedObject::remove(typeid(VObject), objectName)) return false;
    VActionNotifier::VObjectDeletion(objectName);
    return true;
}

RefPtr<VObject> VObject::createInput(const WeakPtr<VInputCreatorBase>& /*creator*/,
                                     const RefPtr<VSlot>& /*slot*/, const string& /*name*/,
                                     Tolmen::Intercube& /*context*/)
{
    return {}; // no creator can make objects yet
}

} // namespace Quorl
