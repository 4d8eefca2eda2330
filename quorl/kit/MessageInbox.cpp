#include <quorl/kit/MessageInbox.h>

#include <quorl/kit/LongestWait.h>
#include <quorl/tasks/VTaskMessage.h>

#include <algorithm>

namespace Quorl
{

MessageInbox::MessageInbox() = default;
MessageInbox::~MessageInbox() = default;

void MessageInbox::post(const RefPtr<VTaskMessage>& message)
{
    {
        const std::scoped_lock lock(mutex_);
        messages_.push_back(message);
    }
    arrived_.notify_one();
}

RefPtr<VTaskMessage> MessageInbox::takeFirst()
{
    if (messages_.empty()) return {};
    RefPtr<VTaskMessage> message = messages_.front();
    messages_.pop_front();
    return message;
}

RefPtr<VTaskMessage> MessageInbox::take()
{
    const std::scoped_lock lock(mutex_);
    return takeFirst();
}

RefPtr<VTaskMessage> MessageInbox::wait()
{
    std::unique_lock lock(mutex_);
    arrived_.wait(lock, [this] { return isDone(); });
    return isClosed_ ? RefPtr<VTaskMessage>() : takeFirst();
}

RefPtr<VTaskMessage> MessageInbox::waitFor(std::chrono::milliseconds time)
{
    std::unique_lock lock(mutex_);
    arrived_.wait_for(lock, std::min(time, kLongestWait), [this] { return isDone(); });
    return isClosed_ ? RefPtr<VTaskMessage>() : takeFirst();
}

bool MessageInbox::isEmpty() const
{
    const std::scoped_lock lock(mutex_);
    return messages_.empty();
}

bool MessageInbox::isClosed() const
{
    const std::scoped_lock lock(mutex_);
    return isClosed_;
}

void MessageInbox::open(bool mayWait)
{
    const std::scoped_lock lock(mutex_);
    isClosed_ = false;
    mayWait_ = mayWait;
}

void MessageInbox::close()
{
    {
        const std::scoped_lock lock(mutex_);
        isClosed_ = true;
    }
    arrived_.notify_all();
}

} // namespace Quorl
