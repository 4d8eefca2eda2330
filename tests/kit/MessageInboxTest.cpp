#include <quorl/kit/HostQueue.h>
#include <quorl/kit/MessageInbox.h>
#include <quorl/tasks/VTaskMessage.h>

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

namespace Quorl
{
namespace
{

constexpr auto kMeanwhile = std::chrono::milliseconds(50); // until somebody waits, mostly

TEST(MessageInbox, WaitsForTheLongestTimeThatCanBeTold)
{
    MessageInbox inbox;
    inbox.open(true);
    const RefPtr<VTaskMessage> message(new VTaskMessage);
    const std::jthread sender([&] {
        std::this_thread::sleep_for(kMeanwhile);
        inbox.post(message);
    });

    EXPECT_EQ(inbox.waitFor(std::chrono::milliseconds::max()), message);
}

TEST(HostQueue, WaitsForTheLongestTimeThatCanBeTold)
{
    HostQueue::drain(); // of what others have left
    const std::jthread sender([] {
        std::this_thread::sleep_for(kMeanwhile);
        HostQueue::post([] {}, {});
    });

    EXPECT_TRUE(HostQueue::waitFor(std::chrono::milliseconds::max()));
    EXPECT_EQ(HostQueue::drain(), 1);
}

} // namespace
} // namespace Quorl
