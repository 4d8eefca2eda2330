#include <quorl/slots/VParameterConnectionConstraint.h>

namespace Tolmen
{
template class ReferenceBase<Quorl::VParameterConnectionConstraint>;
} // namespace Tolmen

namespace Quorl
{

VParameterConnectionConstraint::~VParameterConnectionConstraint() = default;

} // namespace Quorl
