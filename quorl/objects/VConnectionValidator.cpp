#include <quorl/objects/VConnectionValidator.h>

#include <quorl/objects/VRequest.h>

namespace Tolmen
{
template class ReferenceBase<Quorl::VConnectionValidator>;
} // namespace Tolmen

namespace Quorl
{

VConnectionValidator::VConnectionValidator() = default;
VConnectionValidator::~VConnectionValidator() = default;

void VConnectionValidator::taintFromRequest(const VRequest& request)
{
    Ageable& newestHeardOf = *this;
    if (!(newestHeardOf < request.NewestConnection)) return;
    newestHeardOf = request.NewestConnection;
    Taint = request.NewestConnectionObject;
}

} // namespace Quorl
