#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>
#include <quorl/foundation/RefPtr.h>

namespace Quorl
{

/// Runs tasks, each on a thread of its own. The kernel has none: a module, or the application,
/// derives from this and is found through `VThreadCreator`. What stands here does nothing.
///
/// Threads: `CurrentThread` is called from any, at each message of the logger. Of the others, each
/// manager says for itself.
class QUORL_API VThreadManager
{
public:
    VThreadManager();
    virtual ~VThreadManager();

    /// Has the body of a task run. \return whether it will.
    virtual bool start(const RefPtr<VTask>& task);

    /// Returns when the task's body has ended. \return false if that is not to be waited for.
    virtual bool wait(const RefPtr<VTask>& task);

    virtual bool isrunning(const RefPtr<VTask>& task) const;

    /// Hands a message to a task. \return whether it will get it.
    virtual bool sendMessage(const RefPtr<VTask>& task, const RefPtr<VTaskMessage>& message);

    /// Returns when no task is running any more, or when the time is over.
    /// \param milliseconds the most that it takes.
    virtual void waitForAll(unsigned long milliseconds);

    /// The task whose body calls this; null outside of all.
    virtual WeakPtr<VTask> CurrentThread();
};

} // namespace Quorl
