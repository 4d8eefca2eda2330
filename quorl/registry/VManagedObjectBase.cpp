#include <quorl/registry/VManagedObjectBase.h>

namespace Tolmen
{
template class ReferenceBase<Quorl::VManagedObjectBase>;
} // namespace Tolmen

namespace Quorl
{

VManagedObjectBase::VManagedObjectBase() = default;
VManagedObjectBase::~VManagedObjectBase() = default;

} // namespace Quorl
