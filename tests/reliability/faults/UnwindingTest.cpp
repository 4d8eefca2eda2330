#include <quorl/modules/VSaveable.h>
#include <quorl/modules/ZelmSaver.h>
#include <quorl/registry/VManagedObjectIterator.h>
#include <quorl/services/VLogger.h>
#include <quorl/services/VUndoAction.h>
#include <quorl/slots/VOutputIterator.h>
#include <quorl/slots/VSlotIterator.h>
#include <quorl/tasks/VScheduler.h>
#include <quorl/values/ValueNotifier.h>
#include <quorl/values/ValueNotifierList.h>
#include <tests/support/CapturedOutput.h>
#include <tests/support/Node.h>
#include <tests/support/Observer.h>

#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>
#include <string>
#include <utility>

/// What is called back may throw, or end what calls it. Exceptions reach who began it all, and the
/// same call can be made again; nobody is used behind his end.
namespace Quorl
{
namespace
{

using QuorlTest::ask;
using QuorlTest::makeParameter;
using QuorlTest::makePool;
using QuorlTest::Network;
using QuorlTest::Node;

struct Thrown : std::runtime_error
{
    Thrown() : std::runtime_error("thrown") {}
};

/// Throws the first time it is called.
class ThrowOnce
{
public:
    void operator()()
    {
        if (!std::exchange(hasThrown_, true)) throw Thrown();
        ++calls;
    }
    int calls = 0;

private:
    bool hasThrown_ = false;
};

TEST(Unwinding, AnObserverThrowsToTheSenderAndIsToldTheNextTime)
{
    const auto parameter = makeParameter("told of");
    ThrowOnce first;
    const auto throwing = QuorlTest::makeObserver();
    const auto behind = QuorlTest::makeObserver();
    throwing->whenCalled = [&] { first(); };
    parameter->addNotifier(throwing);
    parameter->addNotifier(behind);
    const RefPtr<ValuePool> pool = makePool();
    const auto set = [&](const char* text) {
        return parameter->setValueFromText(text, pool, "", true, {}, nullptr, nullptr);
    };

    EXPECT_THROW(set("2"), Thrown);
    EXPECT_EQ(behind->calls.size(), 0U);
    EXPECT_TRUE(set("3"));

    EXPECT_EQ(first.calls, 1);
    ASSERT_EQ(behind->calls.size(), 1U);
    EXPECT_EQ(behind->calls.front().text, "3");
}

TEST(Unwinding, AnObserverMayThrowWhileAPoolIsActivated)
{
    const auto parameter = makeParameter("told of");
    const auto observer = QuorlTest::makeObserver();
    ThrowOnce first;
    const RefPtr<ValuePool> pool = makePool();
    pool->createVariable(parameter, RefPtr<VValueBase>(new VValue<double>(2.0)));
    parameter->addNotifier(observer);
    observer->whenCalled = [&] { first(); };

    EXPECT_THROW(pool->activate({}, {}, nullptr), Thrown);
    pool->activate({}, {}, nullptr);

    EXPECT_EQ(first.calls, 1);
}

/// A visitor that throws once, whatever it is told.
template <class Visitor, class... Told>
struct Throwing final : Visitor
{
    bool apply(Told... /*told*/) override
    {
        act();
        return true;
    }
    ThrowOnce act;
};

TEST(Unwinding, AVisitorOfTheRegistryThrowsToTheCallerAndLeavesNoWalkBehind)
{
    Network network;
    const auto object = network.node("met");
    Throwing<VManagedObjectIterator, int, const RefPtr<VManagedObject>&, const string&> visitor;

    EXPECT_THROW(VManagedObject::traverse(typeid(VObject), visitor), Thrown);
    network.node("entered behind it");
    object->VManagedObject::remove();

    EXPECT_EQ(VManagedObject::traverse(typeid(VObject), visitor), 1);
}

TEST(Unwinding, AVisitorOfModulesThrowsToTheCaller)
{
    Network network;
    network.node("met");
    ThrowOnce act;
    const auto visit = [&](const string&, const RefPtr<VManagedObject>&, const string&) {
        act();
        return true;
    };

    EXPECT_THROW(VManagedObject::iterateModules(visit), Thrown);
    EXPECT_GT(VManagedObject::iterateModules(visit), 0);
}

TEST(Unwinding, AVisitorOfSlotsThrowsToTheCallerAndLeavesThemUnlocked)
{
    Network network;
    const auto object = network.node("met");
    object->input("in");
    object->output("out");
    ThrowOnce act;
    const auto visit = [&](VSlot&, int) {
        act();
        return true;
    };
    Throwing<VOutputIterator, const std::type_info&, const RefPtr<VSlot>&> outputs;

    EXPECT_THROW(object->iterate_inputs(std::function<bool(VSlot&, int)>(visit)), Thrown);
    EXPECT_EQ(object->iterate_inputs(std::function<bool(VSlot&, int)>(visit)), 1);
    EXPECT_THROW(object->iterateOutputs(outputs, typeid(void)), Thrown);
    EXPECT_EQ(object->iterateOutputs(outputs, typeid(void)), 1);
}

TEST(Unwinding, AVisitorOfSaversThrowsToTheCaller)
{
    struct Saver final : ZelmSaver
    {
        Saver() : ZelmSaver(".text") {}
        bool save(const string& /*file*/) override { return true; }
    };
    VSaveable saveable;
    saveable.addSaver("met", RefPtr<ZelmSaver>(new Saver));
    Throwing<VSaveable::SaveIterator, const string&, const RefPtr<ZelmSaver>&> visitor;

    EXPECT_THROW(saveable.iterateSavers(visitor), Thrown);
    EXPECT_EQ(saveable.iterateSavers(visitor), 1);
}

TEST(Unwinding, AVisitorOfContextsThrowsToTheCaller)
{
    const RefPtr<ValuePool> pool(new ValuePool("met"));
    Throwing<ValuePool::iterator, const string&, const WeakPtr<ValuePool>&> visitor;

    EXPECT_THROW(ValuePool::iterate(visitor), Thrown);
    EXPECT_EQ(ValuePool::iterate(visitor), 1);
}

struct ThrowingLogger final : VLogger
{
    void printmsg(const string&, int, int, const string&, unsigned int, const WeakPtr<VTask>&,
                  const string&) override
    {
        act();
    }
    ThrowOnce act;
};

TEST(Unwinding, ALoggerThrowsToTheOneWhoLogs)
{
    const RefPtr<ThrowingLogger> logger(new ThrowingLogger);
    logger->activate();

    VLogger::enter("a scope");
    EXPECT_THROW(VLogger::print(0, "heard"), Thrown);
    VLogger::leave();
    VLogger::print(0, "heard");

    EXPECT_EQ(logger->act.calls, 1);
}

TEST(Unwinding, AnUpdateThrowsToTheOneWhoAsksAndTheNetworkGoesOn)
{
    Network network;
    const auto source = network.node("source");
    const auto sink = network.node("sink");
    network.connect(source, sink, "number");
    const RefPtr<ValuePool> pool = makePool();
    ThrowOnce act;
    source->whenUpdated = [&](VRequest&) {
        act();
        return true;
    };
    VRequest request(pool, false);

    EXPECT_THROW(sink->init_request(request, 1.0), Thrown);
    for (const auto& object : {source, sink}) object->removeRequest(request);
    EXPECT_TRUE(ask(sink, pool));

    EXPECT_EQ(act.calls, 1);
    EXPECT_EQ(sink->updates, 1);
}

/// Throws when the last handle goes.
struct UnwillingToEnd final : VUndoAction
{
    UnwillingToEnd() : VUndoAction("unwilling") {}
    bool undo() override { return true; }
    void extremeUnction() override { throw Thrown(); }
};

TEST(UnwindingDeathTest, ExtremeUnctionMustNotThrow)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(const RefPtr<UnwillingToEnd> handle(new UnwillingToEnd), "thrown");
}

TEST(OwnEnd, AnObjectMayEndInItsTurnOfTheScheduler)
{
    WeakPtr<Node> watched;
    const RefPtr<ValuePool> pool = makePool();
    {
        const RefPtr<Node> object(new Node("short-lived"));
        object->whenUpdated = [](VRequest&) {
            return VManagedObject::remove(typeid(VObject), "short-lived");
        };
        object->schedule(1.0, pool);
        watched = object;
    }

    EXPECT_EQ(VScheduler::execute(1.0), 1);

    EXPECT_FALSE(watched);
}

/// Ends an object that only the registry owns, when one of its slots is shown.
struct EndAll final : VOutputIterator
{
    static bool end() { return VManagedObject::remove(typeid(VObject), "short-lived"); }
    bool apply(const std::type_info& /*type*/, const RefPtr<VSlot>& /*slot*/) override
    {
        return end();
    }
};

struct EndAllInputs final : VSlotIterator
{
    bool apply(const RefPtr<VSlot>& /*slot*/, int /*expertLevel*/) override
    {
        return EndAll::end();
    }
};

Node& makeShortLived()
{
    auto* const object = new Node("short-lived");
    for (const char* const name : {"a", "b"})
    {
        object->input(name);
        object->output(name);
    }
    return *object;
}

TEST(OwnEnd, AnObjectMayEndInAWalkOfItsSlots)
{
    QuorlTest::outputOf([] { // where the registry says that it is gone already
        const auto end = [](VSlot&, int) { return EndAll::end(); };
        EXPECT_EQ(makeShortLived().iterate_inputs(std::function<bool(VSlot&, int)>(end)), 1);
        const auto endToo = [](const RefPtr<VSlot>&, int) { return EndAll::end(); };
        EXPECT_EQ(
            makeShortLived().iterate_inputs(std::function<bool(const RefPtr<VSlot>&, int)>(endToo)),
            1);
        EndAllInputs inputs;
        EXPECT_EQ(makeShortLived().iterateParameters(0, inputs), 0);
        EndAll outputs;
        EXPECT_EQ(makeShortLived().iterateOutputs(outputs, typeid(void)), 2);
    });
}

TEST(OwnEnd, AnObjectMayEndInAWalkOfTheRegistry)
{
    makeShortLived();
    const auto end = [](int, const RefPtr<VManagedObject>&, const string& name) {
        return VManagedObject::remove(typeid(VObject), name);
    };

    EXPECT_EQ(VManagedObject::iterate(typeid(VObject), end), 1);
    EXPECT_FALSE(VManagedObject::find(typeid(VObject), "short-lived"));
}

TEST(OwnEnd, AParameterMayEndInItsOwnNotification)
{
    RefPtr<QuorlTest::DoubleParameter> parameter = makeParameter("short-lived");
    const WeakPtr<VParameter> watched = parameter;
    const auto first = QuorlTest::makeObserver();
    const auto second = QuorlTest::makeObserver();
    first->whenCalled = [&] { parameter = RefPtr<QuorlTest::DoubleParameter>(); };
    parameter->addNotifier(first);
    parameter->addNotifier(second);
    const RefPtr<ValuePool> pool = makePool();

    parameter->setValueFromText("2", pool, "", true, {}, nullptr, nullptr);

    EXPECT_FALSE(watched);
    EXPECT_EQ(second->calls.size(), 1U);
}

} // namespace
} // namespace Quorl
