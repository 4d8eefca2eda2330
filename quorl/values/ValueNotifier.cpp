#include <quorl/values/ValueNotifier.h>

namespace Tolmen
{
template class ReferenceBase<Quorl::ValueNotifier>;
} // namespace Tolmen

namespace Quorl
{

ValueNotifier::ValueNotifier() = default;
ValueNotifier::~ValueNotifier() = default;

} // namespace Quorl
