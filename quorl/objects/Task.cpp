#include <quorl/objects/Task.h>

namespace Tolmen
{
template class ReferenceBase<Quorl::Task>;
}

namespace Quorl
{

Task::Task() = default;
Task::~Task() = default;

} // namespace Quorl
