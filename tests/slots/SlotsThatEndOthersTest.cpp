#include <quorl/services/VActionNotifier.h>
#include <quorl/slots/VParameterConnectionConstraint.h>
#include <quorl/slots/VSkale.h>
#include <quorl/slots/VSlotSet.h>
#include <quorl/slots/VSlotTables.h>
#include <tests/slots/ContainerTestTypes.h>
#include <tests/slots/ParameterTestTypes.h>
#include <tests/support/CapturedOutput.h>
#include <tests/support/Ending.h>
#include <tests/support/Observer.h>

#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>
#include <utility>

/// Slots and parameters that end, or whose followers change, what is being changed.
namespace Quorl
{
namespace
{

using QuorlTest::Ending;
using QuorlTest::makeLocal;
using QuorlTest::makeObserver;
using QuorlTest::makeParameter;
using QuorlTest::makePool;
using QuorlTest::outputOf;
using QuorlTest::setText;

using EndingParameter = Ending<VValueParameter<double>>;
using EndingValue = Ending<VValue<double>>;

RefPtr<EndingParameter> makeEnding(const string& name)
{
    return RefPtr<EndingParameter>(
        new EndingParameter(RefPtr<VValue<double>>(new VValue<double>(0)), name));
}

/// A container that only `owner` owns, until its parameter "x" ends.
struct OwnedByItsParameter : testing::Test
{
    OwnedByItsParameter()
    {
        const auto parameter = makeEnding("x");
        parameter->whenEnded = [this] { owner = RefPtr<VSlotContainer>(); };
        owner->addParameter("x", 0, parameter, false);
        owner->addParameter("y", 0, makeParameter("y"), false);
    }

    RefPtr<VSlotContainer> owner{new VSkale};
    const WeakPtr<VSlotContainer> container = owner;
};

TEST_F(OwnedByItsParameter, EndsBehindTheRemovalOfThat)
{
    EXPECT_TRUE(container->removeParameter("x"));
    EXPECT_FALSE(container);
}

TEST_F(OwnedByItsParameter, EndsBehindItsReplacement)
{
    EXPECT_TRUE(container->addParameter("x", 0, makeParameter("x"), true));
    EXPECT_FALSE(container);
}

TEST_F(OwnedByItsParameter, EndsWhenItsSlotShowsAnother)
{
    int level = 0;
    const WeakPtr<VSlot> slot = container->getSlot("x", level);

    EXPECT_TRUE(slot->assignParameter(makeParameter("other"), "part"));

    EXPECT_FALSE(container);
}

/// Drops a container when something has been attached.
struct Dropping final : VActionNotifier
{
    void attachPostfix(const RefPtr<VSlot>& /*slot*/) override { *owner = RefPtr<VSkale>(); }
    RefPtr<VSkale>* owner = nullptr;
};

struct OwnedByAnObserver : testing::Test
{
    OwnedByAnObserver()
    {
        dropping->owner = &owner;
        dropping->activate();
        for (const char* name : {"x", "y"})
            owner->addParameter(name, 0, makeParameter(name), false)->Propagates = true;
    }

    RefPtr<VSkale> owner{new VSkale};
    const WeakPtr<VSkale> container = owner;
    const RefPtr<Dropping> dropping{new Dropping};
};

TEST_F(OwnedByAnObserver, IsConnectedBeforeItEnds)
{
    RefPtr<VSlot> slot;
    EXPECT_EQ(outputOf([&] { slot = container->Connect(makeParameter("offered")); }), "");
    EXPECT_TRUE(slot);
    EXPECT_FALSE(container);
}

TEST_F(OwnedByAnObserver, GivesAllItsSlotsOnBeforeItEnds)
{
    const RefPtr<VSkale> other(new VSkale);
    for (const char* name : {"x", "y"}) other->addParameter(name, 0, makeParameter(name), false);

    outputOf([&] { EXPECT_EQ(container->connectSlots(other), 2); });

    EXPECT_FALSE(container);
}

TEST(VSlotContainer, KeepsAnInputThatComesWhileTheOnlyOneIsReplaced)
{
    const RefPtr<VSlotContainer> container(new VSkale);
    {
        const auto parameter = makeEnding("x");
        parameter->whenEnded = [&] {
            container->addParameter("other", 0, makeParameter("o"), false);
        };
        container->addParameter("x", 0, parameter, false);
    }

    container->addParameter("x", 0, makeParameter("x"), true);

    EXPECT_EQ(container->getNumberOfInputs(), 2);
    EXPECT_TRUE(container->getParameter("other"));
}

TEST(VSlotSet, KeepsASlotThatComesWhileTheOnlyOneIsReplaced)
{
    const RefPtr<VSlotContainer> owner(new VSkale);
    VSlotSet slots;
    {
        const auto parameter = makeEnding("x");
        parameter->whenEnded = [&] {
            slots.insertSlot(QuorlTest::makeSlot(owner.rawptr(), "other"), false);
        };
        slots.insertSlot(RefPtr<VSlot>(new VSlot(owner.rawptr(), parameter, "x", "")), false);
    }

    slots.insertSlot(QuorlTest::makeSlot(owner.rawptr(), "x"), true);

    EXPECT_EQ(slots.size(), 2U);
    EXPECT_TRUE(slots.findByName("other"));
}

// Parameters

/// A parameter with a value in each of two contexts, and a handle to one of these that an observer
/// puts on the other.
struct ShownContext : testing::Test
{
    ShownContext()
    {
        for (const auto& pool : {one, two}) parameter->getValue(pool, "");
        observer->whenCalled = [this] { shown = two; };
        parameter->addNotifier(observer);
        touched = {ageIn(one), ageIn(two)};
    }
    std::int64_t ageIn(const RefPtr<ValuePool>& pool) const { return parameter->age(pool).stamp(); }

    const RefPtr<VParameter> parameter = makeLocal(0);
    const RefPtr<ValuePool> one = makePool();
    const RefPtr<ValuePool> two = makePool();
    RefPtr<ValuePool> shown = one;
    const RefPtr<QuorlTest::Observer> observer = makeObserver();
    std::pair<std::int64_t, std::int64_t> touched;
};

TEST_F(ShownContext, IsTouchedWhereItsTextWasSet)
{
    setText(parameter, "5", shown);

    EXPECT_EQ(parameter->getValueAsText(one, "", false), "5");
    EXPECT_GT(ageIn(one), touched.first);
    EXPECT_EQ(ageIn(two), touched.second);
}

TEST_F(ShownContext, IsToldToThoseWhoFollowActions)
{
    struct Following final : VActionNotifier
    {
        void changeParameter(const WeakPtr<VParameter>& /*parameter*/,
                             const RefPtr<ValuePool>& context, const WeakPtr<VValueBase>& /*value*/,
                             const string& /*member*/) override
        {
            told = context;
        }
        RefPtr<ValuePool> told;
    };
    const RefPtr<Following> following(new Following);
    following->activate();

    parameter->notifyValueChange(parameter->getValue(shown, ""), shown, "", {}, nullptr, nullptr);

    EXPECT_EQ(following->told, one);
    EXPECT_GT(ageIn(one), touched.first);
    EXPECT_EQ(ageIn(two), touched.second);
}

TEST_F(ShownContext, IsTouchedThoughAnObserverThrows)
{
    observer->whenCalled = [] { throw std::runtime_error("observer"); };

    EXPECT_THROW(setText(parameter, "5", one), std::runtime_error);
    EXPECT_GT(ageIn(one), touched.first) << "for the value is another one";

    touched.first = ageIn(one);
    EXPECT_THROW(
        parameter->notifyValueChange(parameter->getValue(one, ""), one, "", {}, nullptr, nullptr),
        std::runtime_error);
    EXPECT_GT(ageIn(one), touched.first);
}

TEST(VParameter, OutlastsAPropertyThatOwnsIt)
{
    RefPtr<VParameter> owner = makeParameter("p");
    const WeakPtr<VParameter> parameter = owner;
    {
        const RefPtr<EndingValue> value(new EndingValue(1.0));
        value->whenEnded = [&] { owner = RefPtr<VParameter>(); };
        parameter->setProperty("size", value, {}, nullptr, {});
    }
    const auto observer = makeObserver();
    parameter->addNotifier(observer);

    parameter->setProperty("size", RefPtr<VValueBase>(new VValue<double>(2)), {}, nullptr, {});

    EXPECT_EQ(observer->calls.size(), 1U);
    EXPECT_FALSE(parameter);
}

TEST(VParameter, OutlastsAValueThatOwnsItAndIsSetFromText)
{
    struct Owning final : VValue<double>
    {
        bool setValueFromText(const string& /*text*/) override
        {
            *owner = RefPtr<VParameter>();
            return true;
        }
        RefPtr<VParameter>* owner = nullptr;
    };
    const RefPtr<Owning> value(new Owning);
    RefPtr<VParameter> owner(new VValueParameter<double>(RefPtr<VValue<double>>(value), "p"));
    value->owner = &owner;
    const WeakPtr<VParameter> parameter = owner;
    const auto before = value->age().stamp();

    EXPECT_TRUE(parameter->setValueFromText("1", {}, "", true, {}, nullptr, nullptr));

    EXPECT_GT(value->age().stamp(), before);
    EXPECT_FALSE(parameter);
}

TEST(VParameter, AsksConstraintsThatChangeTheirList)
{
    struct Once final : VParameterConnectionConstraint
    {
        bool accepts(const VParameter& /*other*/, const VParameter& mine) const override
        {
            const_cast<VParameter&>(mine).constraints.clear();
            return false;
        }
    };
    const auto parameter = makeParameter("p");
    parameter->constraints = {new Once, new Once};

    EXPECT_EQ(parameter->ConnectibilityMismatch(*makeParameter("other")), 2);
    EXPECT_EQ(parameter->ConnectibilityMismatch(*makeParameter("other")), 0);
}

TEST(VValueParameter, MakesValuesLikeTheDefaultThatItHasBeenGiven)
{
    const auto parameter = makeParameter("p", 1.0);
    parameter->defaultValue = RefPtr<VValueBase>(new VValue<double>(2));

    EXPECT_EQ(parameter->newValue()->Text(), "2");
    EXPECT_EQ(parameter->copy()->DefaultValue()->Text(), "2");
}

} // namespace
} // namespace Quorl
