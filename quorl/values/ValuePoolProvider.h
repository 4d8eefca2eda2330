#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>
#include <quorl/foundation/RefPtr.h>
#include <quorl/values/ValuePool.h>

namespace Quorl
{

/// Holds the pool that is in use for some user, and tells the parameters when it changes.
class QUORL_API ValuePoolProvider : public Tolmen::ReferenceBase<ValuePoolProvider>
{
public:
    ValuePoolProvider();
    explicit ValuePoolProvider(const WeakPtr<ValuePool>& initialPool);
    ~ValuePoolProvider() override;

    /// Puts a pool in use, then has it tell the parameters, as `ValuePool::activate` does.
    /// \pre `next` is alive.
    void activate(const RefPtr<ValuePool>& next);

    WeakPtr<ValuePool> pool; ///< may be null or dead
};

} // namespace Quorl

namespace Tolmen
{
extern template class ReferenceBase<Quorl::ValuePoolProvider>;
} // namespace Tolmen
