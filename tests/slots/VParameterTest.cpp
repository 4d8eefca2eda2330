#include <quorl/slots/VParameter.h>

#include <quorl/services/VUndoAction.h>
#include <quorl/services/VUndoStack.h>
#include <quorl/slots/VParameterConnectionConstraint.h>
#include <quorl/values/ValueActionBase.h>
#include <tests/slots/ParameterTestTypes.h>
#include <tests/support/CapturedOutput.h>
#include <tests/support/Observer.h>

#include <gtest/gtest.h>

#include <utility>

/// What a parameter is and has: a type, a name, properties, actions, users and constraints.
namespace Quorl
{
namespace
{

using QuorlTest::EmptyParameter;
using QuorlTest::makeObserver;
using QuorlTest::makeParameter;
using QuorlTest::makePool;
using QuorlTest::makeWhole;
using QuorlTest::outputOf;
using QuorlTest::setText;

TEST(VParameter, HasNoTypeWithoutAValue)
{
    const EmptyParameter parameter;

    EXPECT_EQ(parameter.getType(), typeid(void));
    EXPECT_EQ(parameter.getType("x"), typeid(void));
    EXPECT_FALSE(parameter.getValue({}, ""));
    EXPECT_EQ(parameter.age({}), VValueBase::Undefined());
    EXPECT_FALSE(parameter.DefaultValue());
    EXPECT_FALSE(parameter.isLocal());
    EXPECT_EQ(parameter.Reserved, 0);
}

TEST(VParameter, IsNeitherReadNorSetNorTouchedWithoutAValue)
{
    EmptyParameter parameter;
    for (const bool isLocal : {false, true})
    {
        if (isLocal) parameter.Localize();
        EXPECT_EQ(parameter.getValueAsText(makePool(), "", true), "");
        EXPECT_EQ(QuorlTest::ticksOf([&] { parameter.touchValue(makePool()); }), 0);
    }
    parameter.Globalize(makePool());
    EXPECT_FALSE(parameter.isLocal());
}

TEST(VParameter, HasTheTypeOfItsValueOrOfAMember)
{
    const auto parameter = makeWhole();

    EXPECT_EQ(parameter->getType(), typeid(double));
    EXPECT_EQ(parameter->getType(""), typeid(double));
    EXPECT_EQ(parameter->getType("part"), typeid(int));
    EXPECT_EQ(parameter->getType("none"), typeid(void));
}

/// Has a name, and slots, but is no `VObject`.
class NamedContainer final : public VManagedObject, public VSlotContainer
{
public:
    NamedContainer() : VManagedObject("container", 0) {}
    const std::type_info& getDomainType() const override { return typeid(NamedContainer); }
};

TEST(VParameter, IsNamedAfterWhatMadeIt)
{
    const auto parameter = makeParameter("p");
    EXPECT_EQ(parameter->Name(), "p") << "nobody";
    const RefPtr<VSlotContainer> bare(new VSlotContainer);
    parameter->setCreator(bare);
    EXPECT_EQ(parameter->Name(), "p") << "something without a name";
    {
        const RefPtr<VSlotContainer> named(new NamedContainer);
        parameter->setCreator(named);
        EXPECT_EQ(parameter->Name(), "container.p");
    }
    EXPECT_EQ(parameter->Name(), "p") << "it has ended";

    QuorlTest::Network network;
    parameter->setCreator(network.node("object\x1Epart").rawptr());
    EXPECT_EQ(parameter->Name(), "object\x1Epart.p") << "all of the name";
    parameter->setCreator(static_cast<VSlotContainer*>(nullptr));
    EXPECT_EQ(parameter->creator.referer, nullptr);
    EXPECT_EQ(parameter->Name(), "p");
}

TEST(VParameterProperties, AreToldWithTheDefaultValue)
{
    const auto parameter = makeParameter("p", 1.0);
    const auto observer = makeObserver();
    parameter->addNotifier(observer);
    const RefPtr<VValueBase> limit(new VValue<double>(10.0));
    const auto pool = makePool();

    parameter->sendNotification({}, nullptr, pool);
    EXPECT_TRUE(observer->calls.empty()) << "there are none";
    parameter->setProperty("max", limit, {}, nullptr, pool);
    parameter->sendNotification({}, nullptr, pool);

    ASSERT_EQ(observer->calls.size(), 2U);
    for (const auto& call : observer->calls)
    {
        EXPECT_EQ(call.text, "1");
        EXPECT_EQ(call.pool, pool);
        EXPECT_EQ(call.changes, parameter->properties.get());
    }
    EXPECT_EQ(parameter->properties->getValue("max"), limit);
}

TEST(VParameterProperties, AreUpdatedAloudAndShared)
{
    const auto parameter = makeParameter("p", 1.0);
    const auto observer = makeObserver();
    parameter->addNotifier(observer);
    const RefPtr<VValueBase> limit(new VValue<double>(10.0));
    ValueMap changed;
    changed.setValue("max", limit);

    const string text = outputOf([&] { parameter->updateProperties(changed, {}, nullptr); });

    EXPECT_EQ(text, "VParameter::updateProperties()....\n"
                    "VParameter::updateProperties().... DONE\n");
    EXPECT_EQ(parameter->properties->getValue("max"), limit);
    ASSERT_EQ(observer->calls.size(), 1U);
    EXPECT_EQ(observer->calls[0].pool.referer, nullptr);

    ValueMap more;
    more.setValue("min", RefPtr<VValueBase>(new VValue<double>(0.0)));
    outputOf([&] { parameter->updateProperties(more, {}, nullptr); });
    EXPECT_EQ(parameter->properties->nComponents(), 2U) << "beside those that it has";
}

TEST(VParameter, OwnsItsActions)
{
    struct Action final : ValueActionBase
    {
        explicit Action(int& c) : calls(c) {}
        void action(const RefPtr<VValueBase>&, const WeakPtr<ValuePool>&, const ValueNotifierList*,
                    const ValueMap*) override
        {
            ++calls;
        }
        int& calls;
    };
    int calls = 0;
    const auto parameter = makeParameter("p");
    parameter->AddAction(new Action(calls));

    setText(parameter, "1");

    EXPECT_EQ(calls, 1);
}

TEST(VParameter, NamesItsUndoStackAfterItself)
{
    struct Nothing final : VUndoAction
    {
        Nothing() : VUndoAction("nothing") {}
        bool undo() override { return true; }
    };
    QuorlTest::Network network;
    const auto parameter = makeParameter("p");
    parameter->setCreator(network.node("owner").rawptr());
    parameter->AddUndoAction(new Nothing, 0);

    EXPECT_EQ(parameter->UndoStack()->name, "owner.p");
}

TEST(VParameter, MayBeLetGoOfByAnUndoActionThatIsCutOff)
{
    struct Holds final : VUndoAction
    {
        explicit Holds(const RefPtr<VParameter>& changed) : VUndoAction("holds"), parameter(changed)
        {
        }
        bool undo() override { return true; }
        const RefPtr<VParameter> parameter;
    };
    RefPtr<VParameter> parameter = makeParameter("p");
    const WeakPtr<VParameter> watch = parameter;
    parameter->AddUndoAction(new Holds(parameter), 0);
    const RefPtr<VUndoStack> stack = parameter->UndoStack();
    stack->name = "";
    parameter = RefPtr<VParameter>();

    watch->AddUndoAction(new Holds({}), 1);

    EXPECT_FALSE(watch);
    EXPECT_EQ(stack->name, "p") << "named all the same";
}

TEST(VParameter, NeverRemovesOrVisitsUsers)
{
    struct Visit final : VParameter::UserIterator
    {
        bool apply(const WeakPtr<VManagedObject>&, const string&) override
        {
            ADD_FAILURE();
            return true;
        }
    };
    QuorlTest::Network network;
    const auto user = network.node("user");
    const auto parameter = makeParameter("p");
    parameter->includeUser(user, "reads");
    parameter->includeUser(user, "reads");
    parameter->removeUser(user, "reads");
    Visit visit;

    EXPECT_EQ(parameter->users.size(), 2U);
    EXPECT_EQ(parameter->iterateUsers(visit), 0);
}

TEST(VParameter, CountsTheConstraintsThatRefuseAnother)
{
    struct Constraint final : VParameterConnectionConstraint
    {
        explicit Constraint(bool a) : answer(a) {}
        bool accepts(const VParameter& offered, const VParameter& mine) const override
        {
            asked = {&offered, &mine};
            return answer;
        }
        bool answer;
        mutable std::pair<const VParameter*, const VParameter*> asked;
    };
    const auto parameter = makeParameter("p");
    const auto other = makeParameter("q");
    EXPECT_EQ(parameter->ConnectibilityMismatch(*other), 0);

    const RefPtr<Constraint> refusing(new Constraint(false));
    auto* const dead = new Constraint(false);
    parameter->constraints = {refusing, new Constraint(true), dead};
    delete dead;

    EXPECT_EQ(parameter->ConnectibilityMismatch(*other), 1);
    EXPECT_EQ(refusing->asked.first, static_cast<const VParameter*>(other.rawptr()));
    EXPECT_EQ(refusing->asked.second, static_cast<const VParameter*>(parameter.rawptr()));
}

} // namespace
} // namespace Quorl
