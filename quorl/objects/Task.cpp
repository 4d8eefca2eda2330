#include <quorl/objects/Task.h>

namespace Tolmen
{
template class ReferenceBase<Quorl::Task>;
} // namespace Tolmen

namespace Quorl
{

Task::Task() = default;
Task::~Task() = default;

} // namespace Quorl
