#pragma once

#include <quorl/foundation/Export.h>
#include <quorl/foundation/RefPtr.h>

namespace Tolmen
{

/// A reference base with two more steps in its life, both run by its handles.
class TOLMEN_API Cacheable : public ReferenceBase<Cacheable>
{
public:
    ~Cacheable() override;

    /// Runs whenever a strong handle is made while there is none, before it counts.
    virtual void CacheableDeferredConstructor();

    /// Runs when the last strong handle has gone: all handles are dead, the object is still whole.
    virtual void PreDestructor();
};

extern template class ReferenceBase<Cacheable>;

} // namespace Tolmen
