#include <quorl/tasks/VTaskMessage.h>

namespace Tolmen
{
template class ReferenceBase<Quorl::VTaskMessage>;
} // namespace Tolmen

namespace Quorl
{

VTaskMessage::VTaskMessage() = default;
VTaskMessage::~VTaskMessage() = default;

} // namespace Quorl
