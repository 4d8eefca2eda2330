#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>
#include <quorl/kit/MessageInbox.h>
#include <quorl/modules/VModuleHold.h>
#include <quorl/tasks/VTask.h>

#include <functional>

namespace Quorl
{

/// A task that reads messages and hands its results to the thread of the network:
///
///     void run() override
///     {
///         while (const RefPtr<Job> job = inbox.take())
///             deliver([result = compute(*job), target = target_] {
///                 if (target) target->show(result);
///             });
///     }
///
/// It ends when it is told to (`isToEnd`), which a body that takes its time asks now and then.
class QUORL_API BackgroundTask : public VTask
{
public:
    BackgroundTask();
    ~BackgroundTask() override;

    /// Whether the thread manager wants it to end: the application quits, or the threads' module
    /// leaves. From any thread.
    bool isToEnd() const { return inbox.isClosed(); }

    MessageInbox inbox; ///< what was sent with `sendMessage`

protected:
    /// Has work done on the thread of the network in the host's next turn. What it captures should
    /// be its own, and weak handles. The module that the task comes from stays loaded until then.
    void deliver(std::function<void()> work) const;
};

/// Has a task keep loaded what the parameter that owns it keeps: the module of its object, if a
/// `VCreator` made that. For a thread manager, before the task runs, on the thread of the network.
/// \return what it keeps; null if that is nothing.
QUORL_API RefPtr<VModuleHold> keepModuleLoaded(const VTask& task);

} // namespace Quorl
