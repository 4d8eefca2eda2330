#include <quorl/values/ValuePoolProvider.h>

#include <quorl/values/ValueNotifier.h>

namespace Tolmen
{
template class ReferenceBase<Quorl::ValuePoolProvider>;
} // namespace Tolmen

namespace Quorl
{

ValuePoolProvider::ValuePoolProvider() = default;
ValuePoolProvider::ValuePoolProvider(const WeakPtr<ValuePool>& initialPool) : pool(initialPool) {}
ValuePoolProvider::~ValuePoolProvider() = default;

void ValuePoolProvider::activate(const RefPtr<ValuePool>& next)
{
    const RefPtr<ValuePool> old = pool;
    pool = next;
    next->activate(old, WeakPtr<ValueNotifier>(), nullptr);
}

} // namespace Quorl
