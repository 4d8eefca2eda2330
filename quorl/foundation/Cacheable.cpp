#include <quorl/foundation/Cacheable.h>

namespace Tolmen
{

template class ReferenceBase<Cacheable>;

Cacheable::~Cacheable() = default;

void Cacheable::CacheableDeferredConstructor() {}

void Cacheable::PreDestructor() {}

} // namespace Tolmen
