#include <quorl/values/ValuePoolCreator.h>

namespace Tolmen
{
template class ReferenceBase<Quorl::ValuePoolCreator>;
}

namespace Quorl
{

ValuePoolCreator::ValuePoolCreator() = default;
ValuePoolCreator::~ValuePoolCreator() = default;

} // namespace Quorl
