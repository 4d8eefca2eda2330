#include <quorl/values/ValuePoolCreator.h>

namespace Tolmen
{
template class ReferenceBase<Quorl::ValuePoolCreator>;
} // namespace Tolmen

namespace Quorl
{

ValuePoolCreator::ValuePoolCreator() = default;
ValuePoolCreator::~ValuePoolCreator() = default;

} // namespace Quorl
