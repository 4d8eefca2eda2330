#include <quorl/foundation/mutex.h>

namespace Tolmen
{

mutex::mutex() = default;
mutex::~mutex() = default;

} // namespace Tolmen
