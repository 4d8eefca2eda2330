#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>
#include <quorl/foundation/RefPtr.h>
#include <quorl/modules/VModuleHold.h>

#include <chrono>
#include <functional>

namespace Quorl
{

/// What tasks want done on the thread that owns the network, which has no locks: the host empties
/// the queue once in each turn of its main loop.
///
/// Threads: `post` from any, the rest from the host's.
class QUORL_API HostQueue
{
public:
    HostQueue() = delete;

    /// Enters work. `BackgroundTask::deliver` is the way for tasks of modules.
    /// \param hold what is let go of behind the work and its copies, such as their module; may be
    /// null.
    static void post(std::function<void()> work, const RefPtr<VModuleHold>& hold = {});

    /// Does what is there at the call, in the order of entry. Works, and the ends of what they
    /// capture, may post others, which are left to the next turn.
    /// \return the number of works done.
    /// \throws what a work throws; those behind it stay.
    static int drain();

    /// Waits until something is there. \return false if the time is over before.
    static bool waitFor(std::chrono::milliseconds time);
};

} // namespace Quorl
