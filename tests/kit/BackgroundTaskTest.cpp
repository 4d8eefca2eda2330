#include <quorl/kit/BackgroundTask.h>

#include <quorl/foundation/Interface.h>
#include <quorl/kit/HostQueue.h>
#include <quorl/tasks/ThreadManagerValue.h>
#include <tests/support/TestTask.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <memory>
#include <stdexcept>
#include <thread>

namespace Quorl
{
namespace
{

using namespace std::chrono_literals;

using QuorlTest::makeMessage;
using QuorlTest::makeTask;
using QuorlTest::TestMessage;
using QuorlTest::TestTask;
using testing::ElementsAre;

string textOf(const RefPtr<VTaskMessage>& message)
{
    const RefPtr<TestMessage> known = message;
    return known ? known->text : "none";
}

// Messages

TEST(MessageInbox, GivesMessagesInTheOrderOfArrival)
{
    MessageInbox inbox;
    EXPECT_TRUE(inbox.isEmpty());
    EXPECT_EQ(textOf(inbox.take()), "none");
    inbox.post(makeMessage("one"));
    inbox.post(makeMessage("two"));
    EXPECT_FALSE(inbox.isEmpty());
    EXPECT_EQ(textOf(inbox.wait()), "one");
    EXPECT_EQ(textOf(inbox.waitFor(1h)), "two");
    EXPECT_TRUE(inbox.isEmpty());
}

TEST(MessageInbox, WaitsForALimitedTime)
{
    MessageInbox inbox;
    EXPECT_FALSE(inbox.waitFor(1ms));
    EXPECT_FALSE(inbox.waitFor(0ms));
}

TEST(MessageInbox, NobodyWaitsAtAClosedOneAndWhatIsThereCanBeTaken)
{
    MessageInbox inbox;
    inbox.post(makeMessage("one"));
    inbox.close();
    inbox.post(makeMessage("two"));
    EXPECT_TRUE(inbox.isClosed());
    EXPECT_FALSE(inbox.wait());
    EXPECT_FALSE(inbox.waitFor(1h));
    EXPECT_EQ(textOf(inbox.take()), "one");
    inbox.open(true);
    EXPECT_FALSE(inbox.isClosed());
    EXPECT_EQ(textOf(inbox.wait()), "two");
}

TEST(MessageInbox, OneThatNeverWaitsAnswersAtOnce)
{
    MessageInbox inbox;
    inbox.open(false);
    EXPECT_FALSE(inbox.wait());
    inbox.post(makeMessage("one"));
    EXPECT_EQ(textOf(inbox.wait()), "one");
    EXPECT_FALSE(inbox.isClosed());
}

TEST(MessageInboxThreads, WakesWhoeverWaits)
{
    MessageInbox inbox;
    string seen;
    {
        const std::jthread reader([&] {
            seen = textOf(inbox.wait());
            EXPECT_FALSE(inbox.wait());
        });
        inbox.post(makeMessage("hello"));
        while (!inbox.isEmpty()) std::this_thread::yield();
        inbox.close();
    }
    EXPECT_EQ(seen, "hello");
}

TEST(MessageInboxThreads, LosesNothingOfManySenders)
{
    constexpr int kSenders = 4;
    constexpr int kMessages = 500;
    MessageInbox inbox;
    std::vector<std::jthread> senders;
    for (int number = 0; number < kSenders; ++number)
        senders.emplace_back([&, number] {
            for (int count = 0; count < kMessages; ++count)
                inbox.post(makeMessage(std::to_string(number)));
        });
    for (int count = 0; count < kSenders * kMessages; ++count) EXPECT_TRUE(inbox.wait());
    EXPECT_TRUE(inbox.isEmpty());
}

// The host's turn

TEST(HostQueue, IsEmptyUntilSomethingIsPosted)
{
    EXPECT_EQ(HostQueue::drain(), 0);
    EXPECT_FALSE(HostQueue::waitFor(1ms));
    HostQueue::post({});
    EXPECT_TRUE(HostQueue::waitFor(1h));
    EXPECT_EQ(HostQueue::drain(), 1) << "nothing to do is done, too";
}

TEST(HostQueue, DoesWhatIsThereInItsOrderAndTheRestInTheNextTurn)
{
    std::vector<int> done;
    HostQueue::post([&] {
        done.push_back(1);
        HostQueue::post([&] { done.push_back(3); });
    });
    HostQueue::post([&] { done.push_back(2); });
    EXPECT_EQ(HostQueue::drain(), 2);
    EXPECT_THAT(done, ElementsAre(1, 2));
    EXPECT_EQ(HostQueue::drain(), 1);
    EXPECT_THAT(done, ElementsAre(1, 2, 3));
}

TEST(HostQueue, KeepsWhatStandsBehindAWorkThatThrows)
{
    int done = 0;
    HostQueue::post([] { throw std::runtime_error("no"); });
    HostQueue::post([&] { ++done; });
    EXPECT_THROW(HostQueue::drain(), std::runtime_error);
    EXPECT_EQ(done, 0);
    EXPECT_EQ(HostQueue::drain(), 1);
    EXPECT_EQ(done, 1);
}

TEST(HostQueue, AWorkMayEmptyIt)
{
    int done = 0;
    HostQueue::post([&] { EXPECT_EQ(HostQueue::drain(), 1); });
    HostQueue::post([&] { ++done; });
    EXPECT_EQ(HostQueue::drain(), 1);
    EXPECT_EQ(done, 1);
}

TEST(HostQueue, WhatAWorkHasCapturedMayPostAtItsEnd)
{
    std::vector<int> done;
    std::shared_ptr<void> captured(nullptr,
                                   [&](void*) { HostQueue::post([&] { done.push_back(2); }); });
    HostQueue::post([&, captured] { done.push_back(1); });
    captured.reset();

    EXPECT_EQ(HostQueue::drain(), 1);
    EXPECT_THAT(done, ElementsAre(1));
    EXPECT_EQ(HostQueue::drain(), 1);
    EXPECT_THAT(done, ElementsAre(1, 2));
}

TEST(HostQueueThreads, TakesWorkFromAnyThread)
{
    constexpr int kWorks = 1000;
    int done = 0;
    const auto post = [&] {
        for (int number = 0; number < kWorks; ++number) HostQueue::post([&] { ++done; });
    };
    const std::jthread one(post);
    const std::jthread other(post);
    int drained = 0;
    while (drained < 2 * kWorks && HostQueue::waitFor(1min)) drained += HostQueue::drain();
    EXPECT_EQ(done, 2 * kWorks);
}

// Tasks

TEST(BackgroundTask, DeliversInTheNextTurn)
{
    bool isDone = false;
    const RefPtr<TestTask> task =
        makeTask([&](TestTask& self) { self.deliver([&] { isDone = true; }); });
    task->run();
    EXPECT_FALSE(isDone);
    EXPECT_EQ(HostQueue::drain(), 1);
    EXPECT_TRUE(isDone);
}

TEST(BackgroundTask, EndsWhenItsInboxIsClosed)
{
    const RefPtr<TestTask> task = makeTask();
    EXPECT_FALSE(task->isToEnd());
    task->inbox.close();
    EXPECT_TRUE(task->isToEnd());
}

TEST(BackgroundTask, KeepsTheModuleThatItsOwnerKeeps)
{
    RefPtr<TestTask> task = makeTask();
    EXPECT_FALSE(keepModuleLoaded(*task));

    RefPtr<VValueParameter<VThreadManager>> owner(new VValueParameter<VThreadManager>({}, "tasks"));
    task->setOwner(owner);
    EXPECT_FALSE(keepModuleLoaded(*task));

    RefPtr<VModuleHold> hold(new VModuleHold({}));
    const WeakPtr<VModuleHold> watched = hold;
    owner->addInterface(hold);
    EXPECT_EQ(keepModuleLoaded(*task), hold);
    owner = RefPtr<VValueParameter<VThreadManager>>();
    hold = RefPtr<VModuleHold>();
    EXPECT_TRUE(watched);
    EXPECT_EQ(keepModuleLoaded(*task), watched) << "it has it now";
    task = RefPtr<TestTask>();
    EXPECT_FALSE(watched);
}

TEST(BackgroundTask, WhatItDeliversKeepsItsModuleUntilItIsDone)
{
    WeakPtr<VModuleHold> watched;
    bool wasKept = false;
    {
        const RefPtr<TestTask> task =
            makeTask([&](TestTask& self) { self.deliver([&] { wasKept = watched; }); });
        const RefPtr<VModuleHold> hold(new VModuleHold({}));
        task->addInterface(hold);
        watched = hold;
        task->run();
    }
    EXPECT_TRUE(watched);
    HostQueue::drain();
    EXPECT_TRUE(wasKept);
    EXPECT_FALSE(watched);
}

} // namespace
} // namespace Quorl
