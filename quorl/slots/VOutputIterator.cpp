#include <quorl/slots/VOutputIterator.h>

namespace Quorl
{

VOutputIterator::~VOutputIterator() = default;

} // namespace Quorl
