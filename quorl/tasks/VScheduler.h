#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>
#include <quorl/foundation/RefPtr.h>

#include <list>

namespace Quorl
{

/// The objects that want to be brought up to date soon, each in a context. The application decides
/// when, usually once in each turn of its main loop.
///
/// An object stands there once, and is kept alive until it has run; its context is not. Objects run
/// in the order of their handles, each pulling in what it needs. What is scheduled while `execute`
/// runs waits for the next one.
///
/// Threads: the one that runs the main loop. No lock.
class QUORL_API VScheduler
{
public:
    VScheduler() = delete;

    /// Enters an object, in place of an earlier entry of it.
    /// \param precision for the object's update, scaled by `execute`.
    /// \param pool the context; may be null. Not kept alive.
    /// \return whether it will run in the coming `execute`; false if that has begun already.
    static bool schedule(const RefPtr<VObject>& object, double precision,
                         const RefPtr<ValuePool>& pool);

    /// Runs all entries. An entry is gone before its object runs. If the context of an entry has
    /// ended, the object runs in none.
    /// \param factor multiplies the precision of each entry.
    /// \return the number of objects that were modified.
    /// \throws what a request throws. Entries that were not reached stay; those that were deferred
    /// wait for an `execute` that reaches its end.
    static int execute(double factor);

    /// The entries of the coming, or the running, `execute` in their order; not the deferred ones.
    static std::list<WeakPtr<VObject>> getScheduledList();

    /// Deliberate: 0 before the first `execute`, 1 in it, -1 behind it, 0 in the second, and -1
    /// again from then on behind each.
    static int isRunning();

    static bool AllowScheduling; ///< whether `schedule` enters for the coming `execute`
};

} // namespace Quorl
