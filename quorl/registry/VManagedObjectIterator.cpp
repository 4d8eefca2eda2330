#include <quorl/registry/VManagedObjectIterator.h>

namespace Quorl
{

VManagedObjectIterator::~VManagedObjectIterator() = default;

} // namespace Quorl
