#pragma once

#include <quorl/Export.h>
#include <quorl/foundation/Cache.h>
#include <quorl/objects/VObjectException.h>

namespace Quorl
{

/// An update ran out of cache memory. Passes through all requests up to whoever started the
/// evaluation, who learns from it which object failed.
class QUORL_API VObjectIsOutOfMemory : public Tolmen::Cache::OutOfMemory, public VObjectException
{
public:
    VObjectIsOutOfMemory(const Tolmen::Cache::OutOfMemory& reason, const WeakPtr<VObject>& object);
    ~VObjectIsOutOfMemory() override;
};

} // namespace Quorl
