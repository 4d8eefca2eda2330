#include <quorl/slots/VSlotIterator.h>

namespace Quorl
{

VSlotIterator::~VSlotIterator() = default;

} // namespace Quorl
