#include <tests/reliability/faults/FailingMemory.h>
#include <tests/support/Node.h>
#include <tests/support/Observer.h>

#include <quorl/foundation/Intercube.h>
#include <quorl/foundation/TypeInfo.h>
#include <quorl/foundation/Typename.h>
#include <quorl/registry/VCreatorMap.h>
#include <quorl/registry/VCreatorMapTypes.h>
#include <quorl/services/VUndoStack.h>
#include <quorl/slots/TypedSlotCreator.h>
#include <quorl/slots/VSlotSet.h>
#include <quorl/tasks/ThreadManagerValue.h>
#include <quorl/values/ValueActionBase.h>
#include <quorl/values/ValuePoolProvider.h>

#include <gtest/gtest.h>

#include <functional>
#include <string>

/// Single operations, of which each allocation fails: what there was is as it was, and the same
/// call does all of it when there is memory again.
namespace Quorl
{
namespace
{

using QuorlTest::FailingMemory;
using QuorlTest::makeObserver;
using QuorlTest::makeParameter;
using QuorlTest::makePool;
using QuorlTest::Network;
using QuorlTest::Node;
using QuorlTest::Observer;
using QuorlTest::runWithFailure;

constexpr const char* kLongName = "a name that is longer than a short text";

/// Does the operation on a fresh subject with one failure after the other, alone and with all
/// behind it, until there is none left.
/// \param check is told whether it has failed.
template <class Subject>
void failEach(const std::function<void(Subject&)>& operation,
              const std::function<void(Subject&, bool hasFailed)>& check)
{
    for (const auto extent : {FailingMemory::Once, FailingMemory::FromThenOn})
    {
        int failures = 0;
        for (bool hasFailed = true; hasFailed; failures += hasFailed ? 1 : 0)
        {
            SCOPED_TRACE(failures + 1);
            Subject subject;
            hasFailed = runWithFailure([&] { operation(subject); }, failures + 1, extent);
            check(subject, hasFailed);
            if (testing::Test::HasFailure()) return;
        }
        EXPECT_GT(failures, 0);
    }
}

struct Local
{
    Local() { parameter->Localize(); }

    int shadows() const
    {
        struct Count final : ValueShadowIterator
        {
            bool apply(const RefPtr<ValuePool>&, const RefPtr<VValueBase>&) override
            {
                return true;
            }
        } visitor;
        return parameter->iterateShadows(visitor);
    }

    const RefPtr<VParameter> parameter = makeParameter(kLongName, 1.0);
    const RefPtr<ValuePool> pool = makePool();
};

TEST(OperationFaults, AParameterKnowsAllVariablesThatItHas)
{
    failEach<Local>([](Local& local) { local.parameter->getValue(local.pool, ""); },
                    [](Local& local, bool) {
                        EXPECT_TRUE(local.parameter->getValue(local.pool, ""));
                        EXPECT_EQ(local.shadows(), 1);
                        local.parameter->removeAllShadows();
                        EXPECT_FALSE(local.pool->findVariable(local.parameter->self));
                    });
}

struct Single
{
    Network network;
    const RefPtr<Node> node = network.node(kLongName);
};

TEST(OperationFaults, ASlotThatIsToBeReplacedStays)
{
    struct Replaced : Single
    {
        const RefPtr<VSlot> former = node->input("in");
        const RefPtr<VParameter> parameter = makeParameter("new");
    };
    failEach<Replaced>(
        [](Replaced& subject) { subject.node->addParameter("in", 0, subject.parameter, true); },
        [](Replaced& subject, bool hasFailed) {
            int level = 0;
            const RefPtr<VSlot> present = subject.node->getSlot("in", level);
            ASSERT_TRUE(present);
            EXPECT_EQ(present == subject.former, hasFailed);
            EXPECT_EQ(subject.node->getNumberOfInputs(), 1);
        });
}

TEST(OperationFaults, AReplacementInASetNeedsNoMemory)
{
    VSlotSet slots;
    const RefPtr<VSlot> former(new VSlot);
    const RefPtr<VSlot> next(new VSlot);
    slots.insertSlot(former, true);
    {
        const FailingMemory memory(1, FailingMemory::FromThenOn);
        EXPECT_TRUE(slots.insertSlot(next, true) == next);
    }
    EXPECT_TRUE(slots.contains(next));
    EXPECT_EQ(slots.size(), 1U);
}

TEST(OperationFaults, FunctionsOfAClassAreFoundLater)
{
    failEach<Single>([](Single& subject) { subject.node->findFunctor("getNumberOfParameters"); },
                     [](Single& subject, bool) {
                         EXPECT_TRUE(subject.node->findFunctor("getNumberOfParameters"));
                     });
}

TEST(OperationFaults, APriorityIsChangedWithoutMemory)
{
    Single subject;
    {
        const FailingMemory memory(1, FailingMemory::FromThenOn);
        subject.node->setPriority(7);
    }
    int seen = 0;
    VManagedObject::iterate(
        typeid(VObject),
        [&](int, const RefPtr<VManagedObject>&, const string& name) {
            if (name == subject.node->getName()) ++seen;
            return true;
        },
        7, 8);
    EXPECT_EQ(seen, 1);
}

struct Silence final : VUndoAction
{
    Silence() : VUndoAction(kLongName) {}
    bool undo() override { return true; }
};

struct Undoable
{
    Undoable() { global().setSize(0); }
    ~Undoable() { global().setSize(0); }
    static VUndoStack& global() { return VUndoStack::GlobalUndoStack(); }

    const RefPtr<VUndoStack> stack{new VUndoStack};
    const RefPtr<VParameter> parameter = makeParameter(kLongName);
    const RefPtr<VUndoAction> action{new Silence};
};

TEST(OperationFaults, AnActionIsOnBothUndoStacksOrOnNone)
{
    const auto add = [](Undoable& subject) { subject.stack->AddAction(subject.action); };
    failEach<Undoable>(add, [&](Undoable& subject, bool hasFailed) {
        EXPECT_EQ(subject.stack->size(), hasFailed ? 0 : 1);
        EXPECT_EQ(Undoable::global().size(), hasFailed ? 0 : 1);
        if (hasFailed) add(subject);
        EXPECT_EQ(subject.stack->size(), 1);
        EXPECT_EQ(Undoable::global().size(), 1);
    });
}

TEST(OperationFaults, AnUndoActionOfAParameterIsThereWithTheName)
{
    const auto add = [](Undoable& subject) { subject.parameter->AddUndoAction(subject.action, 0); };
    failEach<Undoable>(add, [&](Undoable& subject, bool hasFailed) {
        const RefPtr<VUndoStack> before = subject.parameter->UndoStack();
        EXPECT_EQ(before ? before->size() : 0, hasFailed ? 0 : 1);
        if (hasFailed) add(subject);
        const RefPtr<VUndoStack> stack = subject.parameter->UndoStack();
        ASSERT_TRUE(stack);
        EXPECT_EQ(stack->size(), 1);
        EXPECT_EQ(stack->name, kLongName);
        EXPECT_EQ(Undoable::global().size(), 1);
    });
}

TEST(OperationFaults, AnActionThatAParameterOwnsIsToldOnce)
{
    struct Counting final : ValueActionBase
    {
        void action(const RefPtr<VValueBase>&, const WeakPtr<ValuePool>&, const ValueNotifierList*,
                    const ValueMap*) override
        {
            ++count;
        }
        int count = 0;
    };
    struct Observed
    {
        const RefPtr<VParameter> parameter = makeParameter("p");
        const RefPtr<Counting> action{new Counting};
    };
    const auto add = [](Observed& subject) { subject.parameter->AddAction(subject.action); };
    failEach<Observed>(add, [&](Observed& subject, bool hasFailed) {
        EXPECT_EQ(subject.parameter->actions.size(), hasFailed ? 0U : 1U);
        if (hasFailed) add(subject);
        EXPECT_EQ(subject.parameter->actions.size(), 1U);
        subject.parameter->setValueFromText("3", {}, "", false, {}, nullptr, nullptr);
        EXPECT_EQ(subject.action->count, 1);
    });
}

TEST(OperationFaults, ATaskThatIsNotAddedCanBeAddedOnceMore)
{
    using Manager = VValue<VThreadManager>;
    struct Following final : VTask
    {
        using VTask::VTask;
        void run() override {}
    };
    struct Managed
    {
        const RefPtr<Manager> value{new Manager(nullptr, {})};
        const RefPtr<VParameter> parameter{new VValueParameter<VThreadManager>(value, "tasks")};
        const RefPtr<VTask> task{new Following(parameter)};
    };
    failEach<Managed>([](Managed& subject) { subject.value->add(subject.task, kLongName); },
                      [](Managed& subject, bool hasFailed) {
                          EXPECT_EQ(subject.value->add(subject.task, kLongName), hasFailed);
                          EXPECT_TRUE(subject.value->findTask(kLongName) == subject.task);
                          EXPECT_TRUE(subject.parameter->contains(subject.task));
                      });
}

struct OfLongNameThatIsLongerThanAShortText
{
};

struct TypedSlots
{
    struct Creator final : TypedSlotCreator
    {
        RefPtr<VSlot> createSlot(VSlotContainer*, const string&, int) override { return {}; }
    };

    ~TypedSlots() { withdraw(); }
    bool enter() const { return TypedSlotCreator::registerTypedSlotCreator(type, creator); }
    bool withdraw() const { return TypedSlotCreator::unregisterTypedSlotCreator(type, creator); }
    bool isKnownByType() const
    {
        return static_cast<bool>(TypedSlotCreator::getTypedSlotCreator(type));
    }
    bool isKnownByName() const
    {
        return static_cast<bool>(TypedSlotCreator::getTypedSlotCreator(Tolmen::Typename(type)));
    }

    const std::type_info& type = typeid(OfLongNameThatIsLongerThanAShortText);
    const RefPtr<Creator> creator{new Creator};
};

TEST(OperationFaults, ACreatorOfSlotsIsInBothTablesOrInNone)
{
    failEach<TypedSlots>([](TypedSlots& slots) { slots.enter(); },
                         [](TypedSlots& slots, bool hasFailed) {
                             EXPECT_EQ(slots.isKnownByType(), !hasFailed);
                             EXPECT_EQ(slots.isKnownByName(), !hasFailed);
                         });

    struct Entered : TypedSlots
    {
        Entered() { enter(); }
    };
    failEach<Entered>([](Entered& slots) { slots.withdraw(); },
                      [](Entered& slots, bool hasFailed) {
                          EXPECT_EQ(slots.isKnownByType(), hasFailed);
                          EXPECT_EQ(slots.isKnownByName(), hasFailed);
                      });
}

TEST(OperationFaults, APoolThatIsActivatedOnceMoreTellsAllWhoseVariablesItHas)
{
    struct Provided
    {
        Provided()
        {
            parameter->addNotifier(observer);
            pool->createVariable(parameter, RefPtr<VValueBase>(new VValue<double>(3.0)));
        }

        const RefPtr<VParameter> parameter = makeParameter("p");
        const RefPtr<Observer> observer = makeObserver();
        const RefPtr<ValuePool> former = makePool();
        const RefPtr<ValuePool> pool = makePool();
        const RefPtr<ValuePoolProvider> provider{new ValuePoolProvider(former)};
    };
    failEach<Provided>([](Provided& subject) { subject.provider->activate(subject.pool); },
                       [](Provided& subject, bool hasFailed) {
                           EXPECT_TRUE(subject.provider->pool ==
                                       (hasFailed ? subject.former : subject.pool));
                           if (!hasFailed) return;
                           subject.observer->calls.clear();
                           subject.provider->activate(subject.pool);
                           EXPECT_EQ(subject.observer->calls.size(), 1U);
                       });
}

TEST(OperationFaults, AnObjectThatTakesASlotOverIsWholeOrGone)
{
    struct Extracted : Single
    {
        int objects() const { return VManagedObject::size(typeid(VObject)); }

        const RefPtr<VSlot> slot = node->input("in");
        const int before = objects();
    };
    // A constructor that does not come to its end leaves a name, which the next object takes.
    const auto liveOne = [] {
        return VCreators(typeid(VObject))->liveCreator("taken out of another object: in");
    };
    failEach<Extracted>(
        [](Extracted& subject) {
            subject.node->extractSlot(subject.slot, {}, "taken out of another object: ");
        },
        [&](Extracted& subject, bool hasFailed) {
            RefPtr<VObject> object = liveOne();
            EXPECT_EQ(static_cast<bool>(object), !hasFailed);
            if (!object)
                object =
                    subject.node->extractSlot(subject.slot, {}, "taken out of another object: ");
            ASSERT_TRUE(object);
            EXPECT_EQ(object->getNumberOfInputs(), 1);
            EXPECT_EQ(object->getNumberOfOutputs(), 1);
            object->VManagedObject::remove();
            EXPECT_EQ(subject.objects(), subject.before);
        });
}

TEST(OperationFaults, NothingIsLostOfTypesThatBecomeKnown)
{
    struct Unknown
    {
    };
    int failures = 0;
    for (bool hasFailed = true; hasFailed; ++failures)
    {
        const long blocks = FailingMemory::blocks();
        hasFailed =
            runWithFailure([] { const Tolmen::TypeInfo type(typeid(Unknown)); }, failures + 1);
        if (!hasFailed) break;
        EXPECT_EQ(FailingMemory::blocks(), blocks) << failures;
    }
    EXPECT_GT(failures, 1);
}

} // namespace
} // namespace Quorl
