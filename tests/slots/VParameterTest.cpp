#include <quorl/slots/VParameter.h>

#include <quorl/registry/VCreationPreferences.h>
#include <quorl/services/VActionNotifier.h>
#include <quorl/services/VUndoAction.h>
#include <quorl/services/VUndoStack.h>
#include <quorl/slots/VParameterConnectionConstraint.h>
#include <quorl/slots/VValueParameter.h>
#include <quorl/values/VGraph.h>
#include <quorl/values/ValueActionBase.h>
#include <tests/support/CapturedOutput.h>
#include <tests/support/Node.h>
#include <tests/support/Observer.h>

#include <gtest/gtest.h>

#include <vector>

namespace Quorl
{
namespace
{

using QuorlTest::DoubleParameter;
using QuorlTest::EmptyParameter;
using QuorlTest::makeObserver;
using QuorlTest::makeParameter;
using QuorlTest::makePool;
using QuorlTest::outputOf;
using QuorlTest::tick;
using QuorlTest::ticksOf;

bool setText(const RefPtr<VParameter>& parameter, const string& text,
             const RefPtr<ValuePool>& pool = {}, bool create = true)
{
    return parameter->setValueFromText(text, pool, "", create, WeakPtr<ValueNotifier>(), nullptr,
                                       nullptr);
}

string textOf(const RefPtr<VValueBase>& value)
{
    return value ? value->Text() : "none";
}

RefPtr<VParameter> makeLocal(double datum)
{
    const RefPtr<VParameter> parameter = makeParameter("p", datum);
    parameter->Localize();
    return parameter;
}

/// A value with a part that belongs to it.
class Whole final : public VValue<double>
{
public:
    class Part final : public VValue<int>
    {
    public:
        using VValue<int>::VValue;
        bool setContainerValue(const WeakPtr<VValueBase>&) override { return true; }
        RefPtr<VValueBase> copy() const override { return RefPtr<VValueBase>(new Part(*this)); }
    };

    explicit Whole(double datum) : VValue<double>(datum)
    {
        components.setValue("part", RefPtr<VValueBase>(new Part(7)));
    }
    RefPtr<VValueBase> copy() const override
    {
        double datum = 0;
        getValue(datum);
        return RefPtr<VValueBase>(new Whole(datum));
    }
};

RefPtr<VParameter> makeWhole()
{
    return RefPtr<VParameter>(
        new VValueParameter<double>(RefPtr<VValue<double>>(new Whole(1.0)), "whole"));
}

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

TEST(VParameter, HasTheTypeOfItsValueOrOfAMember)
{
    const auto parameter = makeWhole();

    EXPECT_EQ(parameter->getType(), typeid(double));
    EXPECT_EQ(parameter->getType(""), typeid(double));
    EXPECT_EQ(parameter->getType("part"), typeid(int));
    EXPECT_EQ(parameter->getType("none"), typeid(void));
}

TEST(VParameterGlobal, HasItsDefaultValueInAllPoolsAndPutsNoneThere)
{
    const auto parameter = makeParameter("p", 2.0);
    const auto pool = makePool();

    EXPECT_EQ(parameter->getValue(pool, ""), parameter->defaultValue);
    EXPECT_FALSE(pool->findVariable(parameter));
}

TEST(VParameterGlobal, GivesTheWholeValueWhateverTheMember)
{
    const auto parameter = makeWhole();

    EXPECT_EQ(parameter->getValue(makePool(), "part"), parameter->defaultValue);
    EXPECT_EQ(parameter->getValueAsText(makePool(), "part", true), "1");
    EXPECT_TRUE(parameter->setValueFromText("5", {}, "part", true, {}, nullptr, nullptr));
    EXPECT_EQ(textOf(parameter->defaultValue), "5");
}

TEST(VParameterLocal, MakesItsVariableWhenItIsRead)
{
    const auto parameter = makeLocal(2.0);
    const auto pool = makePool();
    tick();

    const RefPtr<VValueBase> value = parameter->getValue(pool, "");

    EXPECT_EQ(pool->findVariable(parameter), value);
    EXPECT_FALSE(value == parameter->defaultValue);
    EXPECT_EQ(textOf(value), "2");
    EXPECT_EQ(value->age(), Ageable::GlobalTime);
    EXPECT_EQ(parameter->getValue(pool, ""), value);
}

TEST(VParameterLocal, GivesMembersOfItsVariable)
{
    const auto parameter = makeWhole();
    parameter->Localize();
    const auto pool = makePool();

    EXPECT_EQ(textOf(parameter->getValue(pool, "part")), "7");
    EXPECT_TRUE(parameter->setValueFromText("8", pool, "part", true, {}, nullptr, nullptr));
    EXPECT_EQ(textOf(parameter->getValue(pool, "part")), "8");
    EXPECT_EQ(parameter->getValue(pool, "none"), parameter->defaultValue) << "falls back";
}

TEST(VParameterLocal, FallsBackToItsDefaultWithoutAPool)
{
    const auto parameter = makeLocal(2.0);

    EXPECT_EQ(parameter->getValue({}, ""), parameter->defaultValue);
    EXPECT_EQ(&parameter->age({}), &parameter->defaultValue->age());
}

TEST(VParameterLocal, MakesNoVariableByBeingAskedForItsAge)
{
    const auto parameter = makeLocal(2.0);
    const auto pool = makePool();

    EXPECT_EQ(&parameter->age(pool), &parameter->defaultValue->age());
    EXPECT_FALSE(pool->findVariable(parameter));
    EXPECT_FALSE(parameter->getLocalValue(pool, "", false));
    parameter->touchValue(pool);
    EXPECT_EQ(parameter->defaultValue->age(), Ageable::GlobalTime) << "touches the default";
}

TEST(VParameterLocal, TouchesItsVariableAlone)
{
    const auto parameter = makeLocal(2.0);
    const auto pool = makePool();
    const RefPtr<VValueBase> variable = parameter->getValue(pool, "");
    const Ageable before = parameter->defaultValue->age();
    parameter->touchValue(pool);

    EXPECT_EQ(variable->age(), Ageable::GlobalTime);
    EXPECT_EQ(parameter->defaultValue->age(), before);
    EXPECT_EQ(&parameter->age(pool), &variable->age());
}

TEST(VParameterSetting, TellsTheNewDatumWithTheOldAgeAndTouchesThen)
{
    const auto parameter = makeParameter("p", 1.0);
    const auto observer = makeObserver();
    parameter->addNotifier(observer);
    const auto before = parameter->defaultValue->age().stamp();

    EXPECT_EQ(ticksOf([&] { EXPECT_TRUE(setText(parameter, "2")); }), 1);

    ASSERT_EQ(observer->calls.size(), 1U);
    EXPECT_EQ(observer->calls[0].text, "2");
    EXPECT_EQ(observer->calls[0].age, before);
    EXPECT_EQ(parameter->defaultValue->age(), Ageable::GlobalTime);
}

TEST(VParameterSetting, TellsNobodyAndMovesNoAgeIfTheTextIsRefused)
{
    const RefPtr<VParameter> parameter(
        new VValueParameter<char>(RefPtr<VValue<char>>(new VValue<char>('x')), "letter"));
    const auto observer = makeObserver();
    parameter->addNotifier(observer);

    EXPECT_EQ(ticksOf([&] { EXPECT_FALSE(setText(parameter, "too long")); }), 0);

    EXPECT_TRUE(observer->calls.empty());
    EXPECT_EQ(parameter->getValueAsText({}, "", false), "x");
}

TEST(VParameterSetting, TellsAndTouchesForAnEqualValueToo)
{
    const auto parameter = makeParameter("p", 1.0);
    const auto observer = makeObserver();
    parameter->addNotifier(observer);

    EXPECT_EQ(ticksOf([&] { setText(parameter, "1"); }), 1);
    EXPECT_EQ(observer->calls.size(), 1U);
}

TEST(VParameterSetting, MayEndTheParameterInTheCallOfAnObserver)
{
    for (const bool byText : {true, false})
    {
        RefPtr<VParameter> parameter = makeParameter("p", 1.0);
        const WeakPtr<VParameter> left = parameter;
        const RefPtr<VValueBase> value = parameter->defaultValue;
        const auto first = makeObserver();
        const auto second = makeObserver();
        parameter->addNotifier(first);
        parameter->addNotifier(second);
        first->whenCalled = [&] { parameter = RefPtr<VParameter>(); };

        VParameter& changed = *parameter;
        EXPECT_EQ(ticksOf([&] {
                      if (byText)
                          changed.setValueFromText("2", {}, "", true, {}, nullptr, nullptr);
                      else
                          changed.notifyValueChange(value, {}, "", {}, nullptr, nullptr);
                  }),
                  1);

        EXPECT_FALSE(left);
        EXPECT_EQ(second->calls.size(), 1U);
        EXPECT_EQ(value->age(), Ageable::GlobalTime);
    }
}

TEST(VParameterSetting, LeavesAParameterThatNobodyOwnsAlone)
{
    const DoubleParameter parameter(RefPtr<VValue<double>>(new VValue<double>(1.0)), "p");

    EXPECT_TRUE(parameter.setValueFromText("2", {}, "", true, {}, nullptr, nullptr));
    parameter.notifyValueChange(parameter.defaultValue, {}, "", {}, nullptr, nullptr);

    EXPECT_EQ(textOf(parameter.defaultValue), "2");
    EXPECT_EQ(parameter.self.referer->strong, 0);
}

TEST(VParameterSetting, SaysThatThereIsNoValue)
{
    const RefPtr<VParameter> parameter(new EmptyParameter);

    const string text = outputOf([&] { EXPECT_FALSE(setText(parameter, "1")); });

    EXPECT_EQ(text, "Vparam->setValueFromText() getValueBase() NOT ok\n");
}

TEST(VParameterSetting, SetsTheDefaultWhereNoVariableMayBeMade)
{
    const auto parameter = makeLocal(1.0);
    const auto pool = makePool();

    EXPECT_TRUE(setText(parameter, "3", pool, false));
    EXPECT_EQ(textOf(parameter->defaultValue), "3");
    EXPECT_FALSE(pool->findVariable(parameter));
    EXPECT_TRUE(setText(parameter, "4", pool, true));
    EXPECT_EQ(textOf(parameter->defaultValue), "3");
    EXPECT_EQ(parameter->getValueAsText(pool, "", false), "4");
    EXPECT_EQ(parameter->getValueAsText(makePool(), "", false), "3");
}

/// Hears of changed parameters.
struct Changes final : VActionNotifier
{
    void changeParameter(const WeakPtr<VParameter>& parameter, const RefPtr<ValuePool>& context,
                         const WeakPtr<VValueBase>& value, const string& member) override
    {
        ++calls;
        last = parameter;
        lastContext = context;
        lastValue = value;
        lastMember = member;
        clock = Ageable::GlobalTime.stamp();
    }
    int calls = 0;
    WeakPtr<VParameter> last;
    RefPtr<ValuePool> lastContext;
    WeakPtr<VValueBase> lastValue;
    string lastMember;
    long long clock = 0;
};

TEST(VParameterSetting, DoesNotTellTheActionChannel)
{
    const RefPtr<Changes> changes(new Changes);
    ASSERT_TRUE(changes->activate());

    setText(makeParameter("p"), "1");

    EXPECT_EQ(changes->calls, 0);
}

TEST(VParameterChange, TellsObserversThenTheActionChannelThenTouches)
{
    const RefPtr<Changes> changes(new Changes);
    ASSERT_TRUE(changes->activate());
    const auto parameter = makeLocal(1.0);
    const auto pool = makePool();
    const RefPtr<VValueBase> value = parameter->getValue(pool, "");
    const auto observer = makeObserver();
    parameter->addNotifier(observer);
    observer->whenCalled = [&] { EXPECT_EQ(changes->calls, 0); };
    const auto before = Ageable::GlobalTime.stamp();

    parameter->notifyValueChange(value, pool, "m", {}, nullptr, nullptr);

    EXPECT_EQ(observer->calls.size(), 1U);
    EXPECT_EQ(changes->calls, 1);
    EXPECT_EQ(changes->last, parameter);
    EXPECT_EQ(changes->lastContext, pool);
    EXPECT_EQ(changes->lastValue, value);
    EXPECT_EQ(changes->lastMember, "m");
    EXPECT_EQ(changes->clock, before);
    EXPECT_EQ(value->age().stamp(), before + 1);
}

TEST(VParameterChange, NamesNoContextForAGlobalParameter)
{
    const RefPtr<Changes> changes(new Changes);
    ASSERT_TRUE(changes->activate());
    const auto parameter = makeParameter("p");

    parameter->notifyValueChange(parameter->defaultValue, makePool(), "", {}, nullptr, nullptr);

    EXPECT_EQ(changes->calls, 1);
    EXPECT_EQ(changes->lastContext.referer, nullptr);
}

TEST(VParameter, BecomesGlobalWithItsDefaultAndWithoutVariables)
{
    const auto parameter = makeLocal(1.0);
    const auto first = makePool();
    const auto second = makePool();
    setText(parameter, "2", first);
    setText(parameter, "3", second);
    const auto observer = makeObserver();
    parameter->addNotifier(observer);

    EXPECT_EQ(ticksOf([&] { parameter->Globalize(first); }), 0);

    EXPECT_FALSE(parameter->isLocal());
    EXPECT_FALSE(first->findVariable(parameter));
    EXPECT_FALSE(second->findVariable(parameter));
    EXPECT_EQ(textOf(parameter->defaultValue), "1") << "the local value is not carried over";
    ASSERT_EQ(observer->calls.size(), 1U);
    EXPECT_EQ(observer->calls[0].text, "1");
    EXPECT_EQ(observer->calls[0].pool.referer, nullptr);
}

TEST(VParameter, LeavesItsVariablesInTheirPoolsWhenItEnds)
{
    const auto pool = makePool();
    WeakPtr<VValueBase> variable;
    {
        const auto parameter = makeLocal(1.0);
        variable = parameter->getValue(pool, "");
    }

    EXPECT_TRUE(variable);
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

TEST(VParameterLocal, CannotBeTurnedGlobalWithAValueOfADeadPool)
{
    const auto parameter = makeLocal(1.0);
    RefPtr<ValuePool> pool = makePool();
    setText(parameter, "2", pool);
    const WeakPtr<ValuePool> left = pool;
    pool = RefPtr<ValuePool>();
    const auto observer = makeObserver();
    parameter->addNotifier(observer);
    const RefPtr<ValuePool> dead = left;

    EXPECT_EQ(parameter->getValue(dead, ""), parameter->defaultValue);
    EXPECT_FALSE(parameter->getLocalValue(dead, "", true));
    EXPECT_EQ(&parameter->age(dead), &parameter->defaultValue->age());
    parameter->Globalize(dead);
    EXPECT_EQ(observer->calls.size(), 1U);
    EXPECT_EQ(textOf(parameter->defaultValue), "1");
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

TEST(VValueParameter, CopiesItsNameLocalityAndVariablesButNotItsFollowers)
{
    const auto parameter = makeLocal(1.0);
    parameter->preferences = new VCreationPreferences("word");
    const auto pool = makePool();
    setText(parameter, "2", pool);
    const auto observer = makeObserver();
    parameter->addNotifier(observer);

    const RefPtr<VParameter> copied = parameter->copy();

    EXPECT_EQ(copied->name, "p");
    EXPECT_EQ(copied->preferences, parameter->preferences);
    EXPECT_TRUE(copied->isLocal());
    EXPECT_FALSE(copied->defaultValue == parameter->defaultValue);
    EXPECT_EQ(copied->getValueAsText(pool, "", false), "2");
    setText(copied, "5", pool);
    EXPECT_EQ(parameter->getValueAsText(pool, "", false), "2");
    EXPECT_TRUE(observer->calls.empty());
    EXPECT_FALSE(copied->creator);
}

TEST(VValueParameter, GivesItsDefaultAnotherDatumWithoutMovingAges)
{
    const auto parameter = makeWhole();
    const RefPtr<VValueBase> number(new VValue<double>(3.0));
    const RefPtr<VValueBase> count(new VValue<int>(9));

    EXPECT_EQ(ticksOf([&] {
                  EXPECT_TRUE(parameter->setGlobalValue(number, ""));
                  EXPECT_FALSE(parameter->setGlobalValue(count, ""));
                  EXPECT_TRUE(parameter->setGlobalValue(count, "part"));
                  EXPECT_FALSE(parameter->setGlobalValue(count, "none"));
              }),
              0);
    EXPECT_EQ(textOf(parameter->defaultValue), "3");
    EXPECT_EQ(textOf(parameter->defaultValue->component("part")), "9");
}

TEST(VValueParameter, KnowsItsDefaultValueAsWhatItIs)
{
    const RefPtr<VValue<double>> value(new VValue<double>(2.0));
    const RefPtr<VValueParameter<double>> parameter(new VValueParameter<double>(value, "p"));
    EXPECT_EQ(parameter->value, value.rawptr());
    EXPECT_EQ(parameter->DefaultValue(), value);
}

TEST(VValueParameter, WithoutAValueMakesNone)
{
    const RefPtr<VValueParameter<double>> parameter(new VValueParameter<double>({}, "p"));
    parameter->local = true;
    const auto pool = makePool();
    EXPECT_EQ(parameter->value, nullptr);
    EXPECT_FALSE(parameter->newValue());
    EXPECT_FALSE(parameter->copy());
    EXPECT_FALSE(parameter->createLocalVariable(pool));
    EXPECT_FALSE(parameter->setGlobalValue(RefPtr<VValueBase>(new VValue<double>(1.0)), ""));
    EXPECT_FALSE(pool->findVariable(parameter));
}

TEST(VValueParameter, MayStandForAGraph)
{
    const RefPtr<VValueParameter<VGraph>> parameter(
        new VValueParameter<VGraph>(RefPtr<VValue<VGraph>>(new VValue<VGraph>), "network"));
    EXPECT_TRUE(parameter->getType() == typeid(VGraph));
    EXPECT_EQ(parameter->getValueAsText({}, "", false), "");
    EXPECT_FALSE(parameter->value->setValueFromText("x"));
    EXPECT_TRUE(VGraph() == VGraph());
}

TEST(VParameter, MayEndByBecomingGlobalWhenItsVariableEnds)
{
    class Last final : public VValue<double>
    {
    public:
        ~Last() override { owner = RefPtr<VParameter>(); }
        RefPtr<VParameter> owner;
    };
    RefPtr<VParameter> parameter = makeLocal(1.0);
    const WeakPtr<VParameter> watch = parameter;
    const auto pool = makePool();
    {
        const RefPtr<Last> value(new Last);
        value->owner = parameter;
        pool->createVariable(parameter, value);
        parameter->addShadow(pool);
    }
    parameter = RefPtr<VParameter>();
    ASSERT_TRUE(watch);
    watch->Globalize({});
    EXPECT_FALSE(watch);
}

} // namespace
} // namespace Quorl
