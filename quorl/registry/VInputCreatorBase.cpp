#include <quorl/registry/VInputCreatorBase.h>

namespace Quorl
{

template class VManagedDomainObject<VInputCreatorBase>;

VInputCreatorBase::VInputCreatorBase(const string& wantedName, int givenPriority,
                                     const RefPtr<VCreationPreferences>& givenPreferences,
                                     const char* givenText)
    : VManagedDomainObject<VInputCreatorBase>(wantedName, givenPriority)
{
    insert(wantedName, givenPriority);
    preferences = givenPreferences;
    priority = givenPriority;
    text = givenText;
}

VInputCreatorBase::~VInputCreatorBase() = default;

} // namespace Quorl
