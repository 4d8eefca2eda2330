#include <quorl/values/VValue.h>

namespace Quorl
{

template class TypedValueCreator<double>;
template class VValue<double>;

} // namespace Quorl
