#include <quorl/objects/VObject.h>

#include <quorl/foundation/Typename.h>
#include <quorl/objects/OwnOperations.h>
#include <quorl/objects/Repeats.h>
#include <quorl/objects/RequestPlans.h>
#include <quorl/objects/VObjectParametersFunctor.h>
#include <quorl/registry/VAcception.h>
#include <quorl/registry/VCreatorBase.h>
#include <quorl/services/VActionNotifier.h>
#include <quorl/slots/VSlot.h>
#include <quorl/tasks/VScheduler.h> // objects are put on the list there

#include <cstdio>

namespace Quorl
{
namespace
{

constexpr char kEndOfBaseName = 30; // the character behind which the registry and creators add

void insertOwnFunctors(VScriptable& object)
{
    const WeakVObjectPtr me(static_cast<VObject*>(&object));
    object.insertFunctor("getNumberOfParameters",
                         RefPtr<VScriptFunctor>(new VObjectParametersFunctor(me)));
}

} // namespace

template class VManagedDomainObject<VObject>;

VObject::ExecutionStatus::ExecutionStatus(unsigned statusNumber, const string& message)
    : status(statusNumber), text(message)
{
}

VObject::ExecutionStatus::~ExecutionStatus() = default;

VObject::OutputObjectIterator::~OutputObjectIterator() = default;
VObjectIterator::~VObjectIterator() = default;

VObject::VObject(const string& wantedName, int givenPriority,
                 const RefPtr<VCreationPreferences>& preferences)
    : VManagedDomainObject<VObject>(wantedName, givenPriority), CreationPreferences(preferences)
{
    OwnOperations::learnDefaults(*this);
    insert(wantedName, givenPriority);
    insertAtFirstUse(insertOwnFunctors);
}

VObject::~VObject()
{
    Tolmen::Watch::shapeChanges(); // for one that nobody owned: plans must not meet what ends here
    Repeats::forget(*this);
    RequestPlans::drop(*this);
}

bool VObject::schedule(double precision, const RefPtr<ValuePool>& pool)
{
    return VScheduler::schedule(RefPtr<VObject>(this), precision, pool);
}

const char* VObject::gimp_icon() const
{
    return nullptr;
}

const char* VObject::xpm_icon() const
{
    return nullptr;
}

RefPtr<VObject> VObject::copy() const
{
    return {};
}

string VObject::type_key() const
{
    return Tolmen::Typename(typeid(*this));
}

string VObject::CreateParameterName(const string& parameterName) const
{
    return getName() + "." + parameterName;
}

string VObject::BaseName() const
{
    return BaseName(getName());
}

string VObject::BaseName(const string& objectName)
{
    return Tolmen::MutableName::BaseName(objectName, kEndOfBaseName);
}

string VObject::createChildname(const string& /*childName*/) const
{
    return {};
}

string VObject::makeChildname(const VCreatorBase& /*creator*/, const string& /*childName*/) const
{
    return {};
}

void VObject::setCreator(const WeakPtr<VCreatorBase>& creator)
{
    Creator = creator;
}

string VObject::CreatorName() const
{
    return Creator ? Creator->getName() : string();
}

void VObject::remove()
{
    const string leaving = getName();
    const RefPtr<VObject> held = Tolmen::heldIfOwned(WeakVObjectPtr(this)); // by a subscriber, too
    VActionNotifier::VObjectDeletion(leaving);
    VManagedObject::remove();
}

bool VObject::remove(const string& objectName)
{
    std::puts("**WARNING** VObject::remove(const string&s): for some yet unknown reason this "
              "function is not working.");
    const string leaving = objectName; // may be the name of the object that ends here
    if (!VManagedObject::remove(typeid(VObject), leaving)) return false;
    VActionNotifier::VObjectDeletion(leaving);
    return true;
}

std::list<VAcception> VObject::accept(const RefPtr<VObject>& /*candidate*/) const
{
    return {};
}

} // namespace Quorl
