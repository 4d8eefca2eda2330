#include <quorl/objects/VObjectIsOutOfMemory.h>

#include <quorl/objects/VObject.h>

namespace Quorl
{

VObjectIsOutOfMemory::VObjectIsOutOfMemory(const Tolmen::Cache::OutOfMemory& reason,
                                           const WeakPtr<VObject>& inTrouble)
    : Tolmen::Cache::OutOfMemory(reason), VObjectException(inTrouble)
{
}

VObjectIsOutOfMemory::~VObjectIsOutOfMemory() = default;

} // namespace Quorl
