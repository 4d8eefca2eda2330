#include <quorl/slots/VParameter.h>

#include <tests/slots/ParameterTestTypes.h>
#include <tests/support/Observer.h>

#include <gtest/gtest.h>

/// A parameter that is the same in all contexts, one that has a variable in each, and what becomes
/// of the variables.
namespace Quorl
{
namespace
{

using QuorlTest::makeLocal;
using QuorlTest::makeObserver;
using QuorlTest::makeParameter;
using QuorlTest::makePool;
using QuorlTest::makeWhole;
using QuorlTest::setText;
using QuorlTest::textOf;
using QuorlTest::tick;
using QuorlTest::ticksOf;

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
