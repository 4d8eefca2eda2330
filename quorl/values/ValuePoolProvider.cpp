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
    const RefPtr<ValuePoolProvider> held =
        Tolmen::heldIfOwned(WeakPtr<ValuePoolProvider>(this)); // by those who are told
    const RefPtr<ValuePool> old = pool;
    pool = next;
    try
    {
        next->activate(old, WeakPtr<ValueNotifier>(), nullptr);
    }
    catch (...)
    {
        if (pool == next) pool = old; // so that to activate it once more tells all of them
        throw;
    }
}

} // namespace Quorl
