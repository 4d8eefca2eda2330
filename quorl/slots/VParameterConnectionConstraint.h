#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>
#include <quorl/foundation/RefPtr.h>

namespace Quorl
{

/// A condition of a parameter on what may be connected in its place.
class QUORL_API VParameterConnectionConstraint
    : public Tolmen::ReferenceBase<VParameterConnectionConstraint>
{
public:
    ~VParameterConnectionConstraint() override;

    /// Whether `other` may stand in the place of `self`, the parameter that has the constraint.
    virtual bool accepts(const VParameter& other, const VParameter& self) const = 0;
};

} // namespace Quorl

namespace Tolmen
{
extern template class ReferenceBase<Quorl::VParameterConnectionConstraint>;
} // namespace Tolmen
