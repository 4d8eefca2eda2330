#include <quorl/slots/VValueParameter.h>

#include <quorl/registry/VCreationPreferences.h>
#include <quorl/values/VGraph.h>
#include <tests/slots/ParameterTestTypes.h>
#include <tests/support/Observer.h>

#include <gtest/gtest.h>

namespace Quorl
{
namespace
{

using QuorlTest::makeLocal;
using QuorlTest::makeObserver;
using QuorlTest::makePool;
using QuorlTest::makeWhole;
using QuorlTest::setText;
using QuorlTest::textOf;
using QuorlTest::ticksOf;

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

} // namespace
} // namespace Quorl
