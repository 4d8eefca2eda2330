#include <quorl/tasks/VThreadCreator.h>

#include <quorl/registry/VCreationPreferences.h>
#include <tests/support/CapturedOutput.h>
#include <tests/support/TestTask.h>

#include <gtest/gtest.h>

namespace Quorl
{
namespace
{

using QuorlTest::makeMessage;
using QuorlTest::makeTask;
using QuorlTest::TestManager;
using QuorlTest::TestTask;
using QuorlTest::TestThreads;

TEST(VThreadManager, AnswersNothingByItself)
{
    VThreadManager manager;
    const RefPtr<VTask> task = makeTask([](TestTask&) { FAIL() << "nobody runs it"; });

    EXPECT_FALSE(manager.start(task));
    EXPECT_FALSE(manager.wait(task));
    EXPECT_FALSE(manager.isrunning(task));
    EXPECT_FALSE(manager.sendMessage(task, makeMessage("hello")));
    manager.waitForAll(1000000);
    EXPECT_EQ(manager.CurrentThread().referer, nullptr);
}

TEST(VThreadCreator, WithoutOneThereIsNoManagerAndNobodyRuns)
{
    const string said = QuorlTest::outputOf([] {
        EXPECT_EQ(VThreadCreator::getThreadManager(), nullptr);
        EXPECT_EQ(VThreadCreator::CurrentThread().referer, nullptr);
    });
    EXPECT_EQ(said, "");
}

TEST(VThreadCreator, IsFoundByTheTypeAsLongAsItLives)
{
    TestManager manager;
    {
        const TestThreads threads(manager);
        EXPECT_EQ(VThreadCreator::getThreadManager(), &manager);
        EXPECT_EQ(threads.creator->getDomainType(), typeid(VInputCreatorBase));
        EXPECT_EQ(VManagedObject::find(typeid(VInputCreatorBase), "test threads"), threads.creator);
    }
    EXPECT_EQ(VThreadCreator::getThreadManager(), nullptr);
}

TEST(VThreadCreator, IsLookedUpAtEachCallAndTheFirstOneCounts)
{
    TestManager first;
    TestManager second;
    const TestThreads later(second, "second", -5);
    EXPECT_EQ(VThreadCreator::getThreadManager(), &second);
    const TestThreads behind(first, "first", -10);
    EXPECT_EQ(VThreadCreator::getThreadManager(), &second) << "priorities do not count";
}

TEST(VThreadCreator, OneThatIsNoThreadCreatorStandsInTheWay)
{
    const RefPtr<VInputCreatorBase> other(new VInputCreatorBase("other", 0, {}, nullptr));
    registerVInput(typeid(VThreadManager), other);
    TestManager manager;
    const TestThreads threads(manager);

    EXPECT_EQ(VThreadCreator::getThreadManager(), nullptr);
    EXPECT_EQ(VThreadCreator::CurrentThread().referer, nullptr);

    unregisterVInput(typeid(VThreadManager), other);
    EXPECT_EQ(VThreadCreator::getThreadManager(), &manager);
    other->remove();
}

TEST(VThreadCreator, TellsTheTaskThatItsManagerRuns)
{
    TestManager manager;
    const TestThreads threads(manager);
    const RefPtr<VTask> task = makeTask();
    EXPECT_EQ(VThreadCreator::CurrentThread().referer, nullptr);
    manager.current = task;
    EXPECT_EQ(VThreadCreator::CurrentThread(), task);
}

} // namespace
} // namespace Quorl
