#include <quorl/objects/VConnectionValidator.h>

#include <quorl/foundation/Watch.h>
#include <quorl/objects/VRequest.h>

namespace Tolmen
{
template class ReferenceBase<Quorl::VConnectionValidator>;
} // namespace Tolmen

namespace Quorl
{

VConnectionValidator::VConnectionValidator() = default;

/// Walks spare what has no validator more than what has one.
VConnectionValidator::~VConnectionValidator()
{
    if (isEntered_) Tolmen::Watch::shapeChanges();
}

void VConnectionValidator::taintFromRequest(const VRequest& request)
{
    Ageable& newestHeardOf = *this;
    if (!(newestHeardOf < request.NewestConnection)) return;
    newestHeardOf = request.NewestConnection;
    Taint = request.NewestConnectionObject;
}

} // namespace Quorl
