#include <quorl/slots/VParameterConnectionConstraint.h>

namespace Tolmen
{
template class ReferenceBase<Quorl::VParameterConnectionConstraint>;
}

namespace Quorl
{

VParameterConnectionConstraint::~VParameterConnectionConstraint() = default;

} // namespace Quorl
