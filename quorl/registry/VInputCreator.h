#pragma once

#include <quorl/Export.h>
#include <quorl/registry/VInputCreatorBase.h>

#include <utility>

namespace Quorl
{

/// Binds a creator to the type of the values that it provides: it is registered for the type as
/// long as it lives.
template <class T, class Base>
class QUORL_TEMPLATE_API VInputCreator : public Base
{
public:
    VInputCreator(const string& givenName, int givenPriority,
                  const RefPtr<VCreationPreferences>& givenPreferences, const char* givenText)
        : Base(givenName, givenPriority, givenPreferences, givenText)
    {
        registerVInput(typeid(T), WeakPtr<VInputCreatorBase>(this));
    }

    /// Takes what a constructor of another `Base` takes.
    template <class... Arguments>
    explicit VInputCreator(Arguments&&... arguments) : Base(std::forward<Arguments>(arguments)...)
    {
        registerVInput(typeid(T), WeakPtr<VInputCreatorBase>(this));
    }

    ~VInputCreator() override { unregisterVInput(typeid(T), WeakPtr<VInputCreatorBase>(this)); }
};

} // namespace Quorl
