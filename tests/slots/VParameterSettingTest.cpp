#include <quorl/slots/VParameter.h>

#include <quorl/services/VActionNotifier.h>
#include <tests/slots/ParameterTestTypes.h>
#include <tests/support/CapturedOutput.h>
#include <tests/support/Observer.h>

#include <gtest/gtest.h>

/// A parameter that gets another value: who hears of it, and when its age moves.
namespace Quorl
{
namespace
{

using QuorlTest::DoubleParameter;
using QuorlTest::EmptyParameter;
using QuorlTest::makeLocal;
using QuorlTest::makeObserver;
using QuorlTest::makeParameter;
using QuorlTest::makePool;
using QuorlTest::outputOf;
using QuorlTest::setText;
using QuorlTest::textOf;
using QuorlTest::ticksOf;

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

} // namespace
} // namespace Quorl
