#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>
#include <quorl/foundation/RefPtr.h>

#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>

namespace Quorl
{

/// Messages on their way to a task, in the order in which they were sent.
///
/// Threads: any of them sends; the task's reads.
class QUORL_API MessageInbox
{
public:
    MessageInbox();
    ~MessageInbox();
    MessageInbox(const MessageInbox&) = delete;
    MessageInbox& operator=(const MessageInbox&) = delete;

    void post(const RefPtr<VTaskMessage>& message); ///< also while it is closed

    RefPtr<VTaskMessage> take(); ///< null if nothing is there

    /// Waits for a message. \return null if the inbox is closed, or never waits.
    RefPtr<VTaskMessage> wait();

    /// The same for a limited time. \return null also if that is over.
    RefPtr<VTaskMessage> waitFor(std::chrono::milliseconds time);

    bool isEmpty() const;

    /// Whether the task has been asked to end. What is here can still be taken.
    bool isClosed() const;

    // For a thread manager

    /// \param mayWait false where the task runs on the thread of whoever started it, so that
    /// nothing could arrive.
    void open(bool mayWait);
    void close(); ///< and ends all waiting

private:
    RefPtr<VTaskMessage> takeFirst(); // under the lock
    bool isDone() const { return isClosed_ || !mayWait_ || !messages_.empty(); }

    mutable std::mutex mutex_;
    std::condition_variable arrived_;
    std::deque<RefPtr<VTaskMessage>> messages_;
    bool isClosed_ = false;
    bool mayWait_ = true;
};

} // namespace Quorl
