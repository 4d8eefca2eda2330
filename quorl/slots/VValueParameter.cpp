#include <quorl/slots/VValueParameter.h>

namespace Quorl
{

template class VValueParameter<double>;

} // namespace Quorl
