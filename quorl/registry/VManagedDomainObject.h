#pragma once

#include <quorl/Export.h>
#include <quorl/registry/VManagedObject.h>

namespace Quorl
{

/// What stands in the domain of `T`: `T` itself and all that derives from it.
///
/// The domain exists from the moment the library of `T` is loaded, before any object of it.
template <class T>
class QUORL_TEMPLATE_API VManagedDomainObject : public VManagedObject
{
public:
    VManagedDomainObject() { static_cast<void>(isInitialized); }
    VManagedDomainObject(const string& givenName, int givenPriority)
        : VManagedObject(givenName, givenPriority)
    {
        static_cast<void>(isInitialized); // a use, lest the initialiser be left out
    }

    const std::type_info& getDomainType() const override { return typeid(T); }

    static bool isInitialized;
};

template <class T>
bool VManagedDomainObject<T>::isInitialized = VManagedObject::InitDomain(typeid(T));

} // namespace Quorl
