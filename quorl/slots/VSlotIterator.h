#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>
#include <quorl/foundation/RefPtr.h>

namespace Quorl
{

/// Visits inputs; true goes on.
class QUORL_API VSlotIterator
{
public:
    virtual ~VSlotIterator();
    virtual bool apply(const RefPtr<VSlot>& slot, int expertLevel) = 0;
};

} // namespace Quorl
