#include <quorl/slots/VSkale.h>

namespace Quorl
{

VSkale::VSkale() = default;
VSkale::~VSkale() = default;

const char* VSkale::MyName()
{
    return "uninitialized";
}

} // namespace Quorl
