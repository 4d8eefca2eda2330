#include <quorl/services/VScriptFunctor.h>

namespace Tolmen
{
template class ReferenceBase<Quorl::VScriptFunctor>;
} // namespace Tolmen

namespace Quorl
{

VScriptFunctor::~VScriptFunctor() = default;

} // namespace Quorl
