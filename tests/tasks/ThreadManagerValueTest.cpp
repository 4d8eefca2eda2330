#include <quorl/tasks/ThreadManagerValue.h>

#include <quorl/slots/VValueParameter.h>
#include <quorl/values/VValueCreator.h>
#include <tests/support/TestTask.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

/// A thread manager as a value, and as the value of a parameter.
namespace Quorl
{
namespace
{

using QuorlTest::makeMessage;
using QuorlTest::makeTask;
using QuorlTest::TestManager;
using QuorlTest::TestTask;
using testing::ElementsAre;
using testing::IsEmpty;

using Value = VValue<VThreadManager>;
using Parameter = VValueParameter<VThreadManager>;

struct ThreadManagerValue : testing::Test
{
    TestManager manager;
    const RefPtr<Value> value{new Value(&manager)};
};

TEST_F(ThreadManagerValue, ReadingTellsWhetherItStandsForAManager)
{
    TestManager other;
    EXPECT_TRUE(value->getValue(manager));
    EXPECT_FALSE(value->getValue(other));
    EXPECT_FALSE(RefPtr<Value>(new Value)->getValue(other));
}

TEST_F(ThreadManagerValue, WritingChangesNothing)
{
    TestManager other;
    EXPECT_TRUE(value->setValue(other));
    EXPECT_EQ(value->manager, &manager);
    EXPECT_FALSE(value->setValueFromText("manager"));
    EXPECT_EQ(value->manager, &manager);
}

TEST_F(ThreadManagerValue, TakingFromAnotherComparesTheManagersWhateverTheTasks)
{
    const RefPtr<Value> same(new Value(&manager));
    same->add(makeTask(), "busy");
    TestManager second;
    const RefPtr<Value> different(new Value(&second));

    EXPECT_TRUE(value->getValueFrom(same));
    EXPECT_FALSE(value->getValueFrom(different));
    EXPECT_FALSE(value->getValueFrom({}));
    EXPECT_FALSE(value->getValueFrom(RefPtr<VValueBase>(new VValue<double>(1.0))));
    EXPECT_EQ(value->manager, &manager);
    EXPECT_THAT(value->tasks, IsEmpty());

    const RefPtr<Value> none(new Value);
    EXPECT_FALSE(value->getValueFrom(none));
    EXPECT_FALSE(none->getValueFrom(value));
    EXPECT_TRUE(none->getValueFrom(RefPtr<Value>(new Value)));
}

TEST_F(ThreadManagerValue, HasNoTextNoChunkNoCreatorAndNoSource)
{
    EXPECT_EQ(value->Text(), "");
    EXPECT_EQ(RefPtr<Value>(new Value)->Text(), "");
    EXPECT_FALSE(value->getChunkOfValue(3));
    EXPECT_FALSE(value->getChunk(3));
    EXPECT_FALSE(value->getValueCreator());
    EXPECT_FALSE(value->source());
    EXPECT_EQ(value->getType(), typeid(VThreadManager));
    EXPECT_TRUE(value->isDifferentFrom(value)) << "managers cannot be compared";
}

TEST_F(ThreadManagerValue, ItsAgeIsItsOwn)
{
    EXPECT_EQ(&value->age(), static_cast<Ageable*>(value.rawptr()));
    value->age().touch();
    EXPECT_EQ(value->age(), Ageable::GlobalTime);
    const Value& constant = *value;
    EXPECT_EQ(&constant.age(), &value->age());
}

TEST_F(ThreadManagerValue, ItsTypeIsKnownByNameAndMakesValuesWithoutAManager)
{
    bool ok = true;
    const RefPtr<Value> made =
        VValueCreator::create(Tolmen::Typename(typeid(VThreadManager)), "text", ok);
    ASSERT_TRUE(made);
    EXPECT_FALSE(ok);
    EXPECT_EQ(made->manager, nullptr);
}

TEST_F(ThreadManagerValue, ACopyHasTheManagerTheComponentsAndANewAgeButNoTasks)
{
    value->add(makeTask(), "one");
    struct Part final : VValue<double>
    {
        using VValue<double>::VValue;
        bool setContainerValue(const WeakPtr<VValueBase>& to) override
        {
            container = to;
            return true;
        }
        RefPtr<VValueBase> copy() const override { return RefPtr<VValueBase>(new Part(*this)); }
        WeakPtr<VValueBase> container;
    };
    const RefPtr<Part> part(new Part(5.0));
    value->components.setValue("part", part);
    value->age().touch();
    Ageable::GlobalTime.touch();

    const RefPtr<Value> copied = value->copy();

    EXPECT_EQ(copied->manager, &manager);
    EXPECT_THAT(copied->tasks, IsEmpty());
    EXPECT_THAT(value->tasks, testing::SizeIs(1));
    EXPECT_EQ(copied->age(), Ageable::GlobalTime);
    const RefPtr<Part> copiedPart = copied->component("part");
    ASSERT_TRUE(copiedPart);
    EXPECT_NE(copiedPart, part);
    EXPECT_EQ(copiedPart->container, copied);
    EXPECT_EQ(copiedPart->Text(), part->Text());
}

TEST_F(ThreadManagerValue, AddsALiveTaskUnderAFreeName)
{
    const RefPtr<VTask> first = makeTask();
    EXPECT_FALSE(value->add({}, "one"));
    EXPECT_TRUE(value->add(first, "one"));
    EXPECT_FALSE(value->add(makeTask(), "one"));
    EXPECT_EQ(value->findTask("one"), first);
    EXPECT_FALSE(value->findTask("One"));
    EXPECT_FALSE(value->findTask(""));
    EXPECT_TRUE(value->add(makeTask(), "")) << "no name is a name, too";
    EXPECT_THAT(manager.takeCalls(), IsEmpty());
}

TEST_F(ThreadManagerValue, AddsUnderTheNameOfATaskThatHasDied)
{
    // Only a task that somebody ended directly can die while it stands here.
    auto* const mortal = new TestTask;
    value->add(RefPtr<VTask>(mortal), "one");
    delete mortal;
    EXPECT_FALSE(value->findTask("one"));
    EXPECT_FALSE(value->start("one"));

    const RefPtr<VTask> next = makeTask();
    EXPECT_TRUE(value->add(next, "one"));
    EXPECT_EQ(value->findTask("one"), next);
    EXPECT_THAT(value->tasks, testing::SizeIs(1));
}

TEST_F(ThreadManagerValue, AnAddedTaskObservesItsOwner)
{
    struct Follower final : VTask
    {
        using VTask::VTask;
        void valueChanged(const RefPtr<VValueBase>&, const WeakPtr<ValuePool>&,
                          const ValueNotifierList*, const ValueMap*) override
        {
            ++changes;
        }
        void run() override {}
        int changes = 0;
    };
    const RefPtr<Parameter> parameter(new Parameter(value, "tasks"));
    const RefPtr<Follower> task(new Follower(parameter));
    parameter->sendNotification({}, nullptr, {});
    value->add(task, "one");
    parameter->notifyValueChange(value, {}, "", {}, nullptr, nullptr);
    EXPECT_EQ(task->changes, 1);
}

TEST_F(ThreadManagerValue, ATaskDiesWithTheValueThatHasIt)
{
    const WeakPtr<VTask> task = [&] {
        const RefPtr<Value> owner(new Value(&manager));
        RefPtr<VTask> made = makeTask();
        owner->add(made, "one");
        const WeakPtr<VTask> watched = made;
        made = RefPtr<VTask>();
        EXPECT_TRUE(watched);
        return watched;
    }();
    EXPECT_FALSE(task);
}

TEST_F(ThreadManagerValue, ForwardsNamesOnlyWhereATaskIs)
{
    const RefPtr<VTask> task = makeTask();
    value->add(task, "one");

    EXPECT_FALSE(value->start("two"));
    EXPECT_FALSE(value->wait("two"));
    EXPECT_FALSE(value->isrunning("two"));
    EXPECT_THAT(manager.takeCalls(), IsEmpty());

    EXPECT_TRUE(value->start("one"));
    EXPECT_TRUE(value->wait("one"));
    EXPECT_TRUE(value->isrunning("one"));
    EXPECT_THAT(manager.takeCalls(), ElementsAre("start", "wait", "isrunning"));
    EXPECT_THAT(manager.tasks, ElementsAre(task, task, task));
}

TEST_F(ThreadManagerValue, PassesOnThatTheManagerRefuses)
{
    const RefPtr<VTask> task = makeTask();
    value->add(task, "one");
    manager.answer = false;

    EXPECT_FALSE(value->start("one"));
    EXPECT_FALSE(value->wait("one"));
    EXPECT_FALSE(value->isrunning("one"));
    EXPECT_THAT(manager.takeCalls(), ElementsAre("start", "wait", "isrunning"));
    const RefPtr<Parameter> parameter(new Parameter(value, "threads"));
    task->setOwner(parameter);
    EXPECT_FALSE(task->sendMessage(makeMessage("hello")));
    EXPECT_THAT(manager.takeCalls(), ElementsAre("message hello"));
}

TEST_F(ThreadManagerValue, ForwardsAnyHandle)
{
    const RefPtr<VTask> stranger = makeTask();
    EXPECT_TRUE(value->start(stranger));
    EXPECT_TRUE(value->wait(stranger));
    EXPECT_TRUE(value->isrunning(stranger));
    EXPECT_TRUE(value->start(RefPtr<VTask>()));
    EXPECT_THAT(manager.takeCalls(), ElementsAre("start", "wait", "isrunning", "start"));
}

TEST_F(ThreadManagerValue, NeverSuspends)
{
    const RefPtr<VTask> task = makeTask();
    value->add(task, "one");
    EXPECT_FALSE(value->suspend("one"));
    EXPECT_FALSE(value->suspend("two"));
    EXPECT_FALSE(value->suspend(task));
    EXPECT_THAT(manager.takeCalls(), IsEmpty());
}

TEST_F(ThreadManagerValue, WithoutAManagerNothingStarts)
{
    const RefPtr<Value> none(new Value);
    const RefPtr<VTask> task = makeTask();
    none->add(task, "one");
    EXPECT_FALSE(none->start(task));
    EXPECT_FALSE(none->start("one"));
    EXPECT_FALSE(none->wait(task));
    EXPECT_FALSE(none->isrunning(task));
}

TEST(ThreadManagerParameter, ExistsWithItsDefaultValueAlone)
{
    TestManager manager;
    const RefPtr<Value> value(new Value(&manager));
    value->add(makeTask(), "one");
    const RefPtr<Parameter> parameter(new Parameter(value, "threads"));
    const RefPtr<ValuePool> pool(new ValuePool);

    EXPECT_FALSE(parameter->copy());
    EXPECT_FALSE(parameter->createLocalVariable(pool));
    EXPECT_FALSE(parameter->setGlobalValue(RefPtr<VValueBase>(new Value(&manager)), ""));
    EXPECT_EQ(parameter->getValue(pool, ""), value);
    EXPECT_EQ(parameter->getType(), typeid(VThreadManager));
    const RefPtr<Value> fresh = parameter->newValue();
    ASSERT_TRUE(fresh);
    EXPECT_NE(fresh, value);
    EXPECT_EQ(fresh->manager, &manager);
    EXPECT_THAT(fresh->tasks, IsEmpty());
}

TEST(ThreadManagerParameter, BeingLocalMakesNoValues)
{
    TestManager manager;
    const RefPtr<Value> value(new Value(&manager));
    const RefPtr<Parameter> parameter(new Parameter(value, "threads"));
    const RefPtr<ValuePool> pool(new ValuePool);
    parameter->Localize();
    EXPECT_EQ(parameter->getValue(pool, ""), value);
}

TEST(ThreadManagerParameter, WithoutAValueItIsOfNoType)
{
    const RefPtr<Parameter> parameter(new Parameter({}, "threads"));
    EXPECT_EQ(parameter->getType(), typeid(void));
    EXPECT_FALSE(parameter->newValue());
    EXPECT_FALSE(parameter->getValue({}, ""));
}

TEST(VTask, SendsThroughTheManagerOfItsOwner)
{
    TestManager manager;
    const RefPtr<Value> value(new Value(&manager));
    RefPtr<Parameter> parameter(new Parameter(value, "threads"));
    const RefPtr<VTask> task = makeTask();

    EXPECT_FALSE(task->sendMessage(makeMessage("nobody"))) << "it has no owner";
    task->setOwner(RefPtr<VParameter>(
        new VValueParameter<double>(RefPtr<VValue<double>>(new VValue<double>(1.0)), "number")));
    EXPECT_FALSE(task->sendMessage(makeMessage("nobody"))) << "its owner has died";
    task->setOwner(parameter);
    EXPECT_TRUE(task->sendMessage(makeMessage("hello")));
    EXPECT_THAT(manager.takeCalls(), ElementsAre("message hello"));
    EXPECT_EQ(manager.tasks.back(), task);

    parameter = RefPtr<Parameter>();
    EXPECT_FALSE(task->sendMessage(makeMessage("nobody")));
}

TEST(VTask, SendsNothingUnderAnotherKindOfParameterOrWithoutAValue)
{
    const RefPtr<VParameter> number(
        new VValueParameter<double>(RefPtr<VValue<double>>(new VValue<double>(1.0)), "number"));
    const RefPtr<Parameter> empty(new Parameter({}, "threads"));
    const RefPtr<Parameter> unmanaged(new Parameter(RefPtr<Value>(new Value), "threads"));
    const RefPtr<VTask> task = makeTask();
    for (const RefPtr<VParameter>& owner :
         {number, RefPtr<VParameter>(empty), RefPtr<VParameter>(unmanaged)})
    {
        task->setOwner(owner);
        EXPECT_FALSE(task->sendMessage(makeMessage("nobody")));
    }
}

TEST(VTask, SyncsNothingByItself)
{
    const RefPtr<VTask> task = makeTask();
    EXPECT_FALSE(task->SyncFromContextValue({}, ""));
    task->valueChanged({}, {}, nullptr, nullptr);
}

} // namespace
} // namespace Quorl
