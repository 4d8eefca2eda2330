#pragma once

#include <quorl/foundation/Export.h>
#include <quorl/foundation/RefPtr.h>

#include <typeinfo>

namespace Tolmen
{

/// What an iteration over interfaces hands on. The foundation defines none.
class TOLMEN_API InterfaceIterationParameter : public ReferenceBase<InterfaceIterationParameter>
{
public:
    ~InterfaceIterationParameter() override;
};

/// A typed service that can be put into an `Intercube`. Derive from `Interface<T>`.
class TOLMEN_API InterfaceBase : public ReferenceBase<InterfaceBase>
{
public:
    ~InterfaceBase() override;

    /// The type under which a cube keeps this interface.
    virtual const std::type_info& getInterfaceDomain() const = 0;

    /// For iterations of an application's own over the interfaces of a cube; true goes on.
    virtual bool apply(Intercube& cube, const RefPtr<InterfaceIterationParameter>& parameter);
    virtual bool apply_const(const Intercube& cube,
                             const RefPtr<InterfaceIterationParameter>& parameter);
};

extern template class ReferenceBase<InterfaceIterationParameter>;
extern template class ReferenceBase<InterfaceBase>;

} // namespace Tolmen
