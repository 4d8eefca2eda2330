#include <quorl/objects/VObjectException.h>

#include <quorl/objects/VObject.h>

namespace Quorl
{

VObjectException::VObjectException(const WeakPtr<VObject>& object) : Object(object) {}
VObjectException::~VObjectException() = default;

} // namespace Quorl
