#include <quorl/services/VUndoAction.h>

namespace Tolmen
{
template class ReferenceBase<Quorl::VUndoAction>;
} // namespace Tolmen

namespace Quorl
{

VUndoAction::VUndoAction(const string& description) : text(description) {}
VUndoAction::~VUndoAction() = default;

} // namespace Quorl
