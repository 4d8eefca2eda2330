#include <quorl/values/ValueNotifier.h>

namespace Tolmen
{
template class ReferenceBase<Quorl::ValueNotifier>;
}

namespace Quorl
{

ValueNotifier::ValueNotifier() = default;
ValueNotifier::~ValueNotifier() = default;

} // namespace Quorl
