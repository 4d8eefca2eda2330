#pragma once

#include <quorl/registry/VManagedObject.h>

namespace Quorl
{

/// Does nothing with what an unloaded module leaves behind: those who have it go on having it.
struct LeaveItems final : VManagedObject::VRemoveItem
{
    void removeItem(const string& /*module*/, const RefPtr<VManagedObject>& /*object*/) override {}
};

} // namespace Quorl
