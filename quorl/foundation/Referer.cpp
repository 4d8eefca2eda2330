#include <quorl/foundation/Referer.h>

#include <quorl/foundation/CastCache.h>

#include <cstdlib>

namespace Tolmen
{

constinit std::int32_t RefererObjects = 0;
constinit std::int32_t CheckRefcountedObjects = 0;
constinit std::atomic<std::uint32_t> theUnloadCount = 0;

#if defined(__GNUC__)
// The null store is the point of the function, so the sanitizer shall not report it in its place.
__attribute__((noinline, cold, no_sanitize("undefined")))
#endif
void faultOnDeadHandle() noexcept
{
    int* volatile nowhere = nullptr;
    *static_cast<volatile int*>(nowhere) = 0;
    std::abort(); // where address 0 can be written
}

} // namespace Tolmen
