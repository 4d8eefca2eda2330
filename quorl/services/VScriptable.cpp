#include <quorl/services/VScriptable.h>

namespace Quorl
{

struct VScriptable::Functors
{
};

VScriptable::VScriptable() : functors_(new Functors) {}
VScriptable::VScriptable(const VScriptable& /*other*/) : VScriptable() {}

VScriptable& VScriptable::operator=(const VScriptable& /*other*/)
{
    return *this;
}

VScriptable::~VScriptable() = default;

} // namespace Quorl
