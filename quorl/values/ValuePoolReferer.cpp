#include <quorl/values/ValuePoolReferer.h>

namespace Quorl
{

ValuePoolReferer::~ValuePoolReferer() = default;

} // namespace Quorl
