#include <quorl/foundation/Cache.h>

namespace Tolmen
{

Cache::OutOfMemory::OutOfMemory(const RefPtr<Cacheable>& subject, const std::string& text)
    : Exception(text), object(subject)
{
}

Cache::OutOfMemory::OutOfMemory(const OutOfMemory& other) = default;
Cache::OutOfMemory& Cache::OutOfMemory::operator=(const OutOfMemory& other) = default;
Cache::OutOfMemory::~OutOfMemory() = default;

} // namespace Tolmen
