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
    /// Takes what the constructor of `Base` takes; for `VInputCreatorBase` the name, the priority,
    /// the preferences and the text.
    template <class... Arguments>
    explicit VInputCreator(Arguments&&... arguments) : Base(std::forward<Arguments>(arguments)...)
    {
        registerVInput(typeid(T), WeakPtr<VInputCreatorBase>(this));
    }

    ~VInputCreator() override { unregisterVInput(typeid(T), WeakPtr<VInputCreatorBase>(this)); }
};

} // namespace Quorl
