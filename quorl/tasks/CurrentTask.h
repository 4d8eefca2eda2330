#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>
#include <quorl/foundation/RefPtr.h>
#include <quorl/values/ValueNotifier.h>

namespace Quorl
{

/// The task under which the caller runs; null outside of all tasks. Threads exist only where a
/// module brings a thread manager in, and while there is none, nobody runs under a task.
QUORL_API WeakPtr<VTask> currentTask();

/// The same task, as the cube that it is.
QUORL_API WeakPtr<ValueNotifier> currentTaskAsCube();

} // namespace Quorl
