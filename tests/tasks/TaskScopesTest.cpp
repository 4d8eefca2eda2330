#include <quorl/services/VLogger.h>
#include <tests/support/TestTask.h>

#include <gtest/gtest.h>

/// The scopes of the logger, as the current task has them.
namespace Quorl
{
namespace
{

using QuorlTest::makeTask;
using QuorlTest::TestManager;
using QuorlTest::TestTask;
using QuorlTest::TestThreads;

struct TaskScopes : testing::Test
{
    TestManager manager;
    const TestThreads threads{manager};
    RefPtr<VTask> task = makeTask([](TestTask&) {});
};

TEST_F(TaskScopes, AreThoseOfTheTaskThatRuns)
{
    VLogger::enter("host");
    manager.current = task;
    EXPECT_EQ(VLogger::CurrentState().name, "::");
    VLogger::enter("task");
    manager.current = {};
    EXPECT_EQ(VLogger::CurrentState().name, "host");
    manager.current = task;
    EXPECT_EQ(VLogger::CurrentState().name, "task");
    VLogger::leave();
    manager.current = {};
    VLogger::leave();
}

TEST_F(TaskScopes, AreTheHostsIfTheTaskHasEnded)
{
    VLogger::enter("host");
    manager.current = task;
    VLogger::enter("task");
    task = RefPtr<VTask>();
    EXPECT_EQ(VLogger::CurrentState().name, "host");
    VLogger::leave();
}

} // namespace
} // namespace Quorl
