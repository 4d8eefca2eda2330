#include <quorl/tasks/VCotask.h>

#include <quorl/slots/VSlot.h>
#include <tests/support/Node.h>
#include <tests/support/TestTask.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>

namespace Quorl
{
namespace
{

using QuorlTest::makeTask;
using QuorlTest::Node;
using QuorlTest::TestManager;
using QuorlTest::TestThreads;
using testing::ElementsAre;
using testing::IsEmpty;

struct Cotasks : testing::Test
{
    QuorlTest::Network network;
    const RefPtr<Node> node = network.node("worker");
};

TEST_F(Cotasks, WithoutAManagerTheInputIsThereAndNothingRuns)
{
    VCotask cotask(node.rawptr(), "tasks", 3);

    int level = 0;
    EXPECT_EQ(node->getSlot("tasks", level), cotask.TaskSlot);
    EXPECT_EQ(level, 3);
    EXPECT_EQ(cotask.TaskSlot->Parameter, cotask.TaskParameter);
    EXPECT_EQ(cotask.TaskSlot->getType(), typeid(void));
    const RefPtr<VTask> task = makeTask();
    EXPECT_FALSE(cotask.addTask(task, "one"));
    EXPECT_FALSE(task->owner);
    EXPECT_FALSE(cotask.findTask("one"));
    EXPECT_FALSE(cotask.run("one"));
    EXPECT_FALSE(cotask.run(task));
    EXPECT_FALSE(cotask.isrunning("one"));
    EXPECT_FALSE(cotask.isrunning(task));
}

TEST_F(Cotasks, AManagerThatComesLaterIsNotSeen)
{
    VCotask cotask(node.rawptr(), "tasks", 0);
    TestManager manager;
    const TestThreads threads(manager);
    EXPECT_FALSE(cotask.addTask(makeTask(), "one"));
    EXPECT_FALSE(cotask.run("one"));
    EXPECT_THAT(manager.calls, IsEmpty());
}

struct ManagedCotasks : Cotasks
{
    TestManager manager;
    const TestThreads threads{manager};
    VCotask cotask{node.rawptr(), "tasks", 0};
};

TEST_F(ManagedCotasks, TheParameterHasTheManagerAndNeitherNameNorPreferences)
{
    const RefPtr<VValue<VThreadManager>> value = cotask.TaskParameter->DefaultValue();
    EXPECT_EQ(value->manager, &manager);
    EXPECT_THAT(value->tasks, IsEmpty());
    EXPECT_EQ(cotask.TaskParameter->name, "");
    EXPECT_FALSE(cotask.TaskParameter->preferences);
    EXPECT_FALSE(cotask.TaskParameter->isLocal());
}

TEST_F(ManagedCotasks, ASecondOneOfTheNameReplacesTheInput)
{
    const VCotask second(node.rawptr(), "tasks", 0);
    EXPECT_EQ(node->getParameter("tasks"), second.TaskParameter);
    EXPECT_EQ(node->getNumberOfInputs(), 1);
}

TEST_F(ManagedCotasks, AddsTasksAndForwards)
{
    const RefPtr<VTask> task = makeTask();
    EXPECT_EQ(cotask.addTask(task, "one"), task);
    EXPECT_EQ(task->owner, cotask.TaskParameter);
    EXPECT_EQ(cotask.findTask("one"), task);
    EXPECT_TRUE(cotask.run("one"));
    EXPECT_TRUE(cotask.isrunning("one"));
    EXPECT_TRUE(cotask.run(task));
    EXPECT_TRUE(cotask.isrunning(task));
    EXPECT_FALSE(cotask.run("two"));
    EXPECT_FALSE(cotask.isrunning("two"));
    EXPECT_THAT(manager.calls, ElementsAre("start", "isrunning", "start", "isrunning"));
}

TEST_F(Cotasks, AnswersFalseWhenItsManagerHasEndedAndSeesNoOther)
{
    auto manager = std::make_unique<TestManager>();
    auto threads = std::make_unique<TestThreads>(*manager);
    VCotask cotask(node.rawptr(), "tasks", 0);
    const RefPtr<VTask> task = makeTask();
    cotask.addTask(task, "one");
    const RefPtr<VValue<VThreadManager>> copied = cotask.TaskParameter->newValue();
    threads.reset();
    manager.reset();
    TestManager next;
    const TestThreads nextThreads(next);

    EXPECT_FALSE(cotask.run("one"));
    EXPECT_FALSE(cotask.run(task));
    EXPECT_FALSE(cotask.isrunning("one"));
    EXPECT_FALSE(cotask.isrunning(task));
    EXPECT_FALSE(task->sendMessage(QuorlTest::makeMessage("hello")));
    EXPECT_FALSE(copied->start(task));
    EXPECT_EQ(copied->Text(), "");
    EXPECT_EQ(cotask.findTask("one"), task);
    EXPECT_THAT(next.calls, IsEmpty());
}

TEST_F(ManagedCotasks, PassesOnThatTheManagerRefuses)
{
    const RefPtr<VTask> task = makeTask();
    cotask.addTask(task, "one");
    manager.answer = false;

    EXPECT_FALSE(cotask.run("one"));
    EXPECT_FALSE(cotask.run(task));
    EXPECT_FALSE(cotask.isrunning("one"));
    EXPECT_FALSE(cotask.isrunning(task));
    EXPECT_THAT(manager.calls, ElementsAre("start", "start", "isrunning", "isrunning"));
}

TEST_F(ManagedCotasks, ATaskThatIsRefusedForItsNameHasItsOwnerAllTheSame)
{
    const RefPtr<VTask> first = makeTask();
    const RefPtr<VTask> second = makeTask();
    cotask.addTask(first, "one");
    EXPECT_FALSE(cotask.addTask(second, "one"));
    EXPECT_EQ(cotask.findTask("one"), first);
    EXPECT_EQ(second->owner, cotask.TaskParameter);
}

TEST_F(ManagedCotasks, RunsATaskThatWasNeverAdded)
{
    const RefPtr<VTask> stranger = makeTask();
    EXPECT_TRUE(cotask.run(stranger));
    EXPECT_THAT(manager.tasks, ElementsAre(stranger));
    EXPECT_FALSE(cotask.addTask({}, "dead"));
    EXPECT_FALSE(cotask.findTask("dead"));
}

TEST_F(ManagedCotasks, ItsEndLeavesTheInputAndTheTasks)
{
    auto passing = std::make_unique<VCotask>(node.rawptr(), "passing", 0);
    const WeakPtr<VTask> task = passing->addTask(makeTask(), "one");
    passing.reset();
    EXPECT_TRUE(node->getParameter("passing"));
    EXPECT_TRUE(task);
    node->removeParameter("passing");
    EXPECT_FALSE(task);
}

TEST_F(ManagedCotasks, ANullNameIsALogicError)
{
    const char* const none = nullptr;
    EXPECT_THROW(VCotask(node.rawptr(), none, 0), std::logic_error);
    EXPECT_EQ(node->getNumberOfInputs(), 1);
}

} // namespace
} // namespace Quorl
