#include <quorl/services/VScriptTypedValue.h>

namespace Tolmen
{
template class ReferenceBase<Quorl::VScriptTypedValue>;
} // namespace Tolmen

namespace Quorl
{

VScriptTypedValue::VScriptTypedValue(const string& text) : value(text) {}
VScriptTypedValue::~VScriptTypedValue() = default;

} // namespace Quorl
