#include <quorl/objects/VStateCreatorBase.h>

#include <quorl/foundation/Cache.h>
#include <quorl/foundation/Interface.h>
#include <quorl/objects/VConnectionValidator.h>
#include <quorl/objects/VConnectionValidatorList.h>
#include <quorl/objects/VObject.h>
#include <quorl/objects/VObjectAge.h>
#include <quorl/objects/VObjectIsOutOfMemory.h>
#include <quorl/objects/VObjectUserInfo.h>
#include <quorl/values/ValuePool.h>
#include <tests/support/Node.h>

#include <gtest/gtest.h>

namespace Quorl
{
namespace
{

using QuorlTest::makePool;
using State = VStateCreatorBase::State;

struct Counted final : Tolmen::Interface<Counted>
{
};

TEST(VStateCreatorBase, GivesANewContextANullStateAndLeavesAnEntry)
{
    const VStateCreatorBase states;
    const auto pool = makePool();
    RefPtr<State>& entry = states.getState(pool);

    EXPECT_FALSE(entry);
    EXPECT_EQ(&states.getState(pool), &entry);
}

TEST(VStateCreatorBase, MakesOneStateForEachContext)
{
    const VStateCreatorBase states;
    const auto first = makePool();
    const auto second = makePool();

    const RefPtr<State> state = states.myState(first);
    EXPECT_TRUE(state);
    EXPECT_EQ(states.myState(first), state);
    EXPECT_EQ(states.getState(first), state);
    EXPECT_FALSE(states.myState(second) == state);
}

TEST(VStateCreatorBase, MakesStatesOfTheObjectsOwnKind)
{
    struct Special final : State
    {
    };
    struct Maker final : VStateCreatorBase
    {
        RefPtr<State> newState() const override { return RefPtr<State>(new Special); }
    };
    const Maker maker;
    const RefPtr<Special> special = maker.myState(makePool());

    EXPECT_TRUE(special);
}

TEST(VStateCreatorBase, StartsStatesWithTheAgeOfNeverModified)
{
    EXPECT_EQ(static_cast<Ageable&>(*RefPtr<State>(new State)).stamp(), 0);
}

TEST(VStateCreatorBase, ReplacesAndRemovesStates)
{
    const VStateCreatorBase states;
    const auto pool = makePool();
    const RefPtr<State> given(new State);
    states.setState(pool, given);
    EXPECT_EQ(states.myState(pool), given);

    states.removeState(pool);
    EXPECT_FALSE(states.getState(pool));
}

TEST(VStateCreatorBase, KeepsTheStateOfAContextThatHasEnded)
{
    const VStateCreatorBase states;
    WeakPtr<State> left;
    {
        left = states.myState(makePool());
    }

    EXPECT_TRUE(left);
}

TEST(VStateCreatorBase, FindsTheFirstInterfaceAmongItsStates)
{
    const VStateCreatorBase states;
    EXPECT_FALSE(states.hasLocalInterface(typeid(Counted)));
    states.getState(makePool());
    const auto pool = makePool();
    const RefPtr<Counted> counted(new Counted);
    states.myState(makePool());
    states.myState(pool)->addInterface(counted);

    EXPECT_EQ(states.hasLocalInterface(typeid(Counted)), counted);
}

TEST(VObjectAge, EntersWhatNeverRanAsOld)
{
    QuorlTest::Network network;
    const auto object = network.node("object");
    VObjectAge ages;

    EXPECT_EQ(ages(WeakPtr<VSlotContainer>(object)), Ageable::Ooooold);
    ages(*object) = Ageable(4);
    EXPECT_EQ(ages(WeakPtr<VSlotContainer>(object)), Ageable(4));
    EXPECT_EQ(ages.size(), 1U);
}

TEST(VObjectAge, KeepsTheAgesOfWhatHasEnded)
{
    const auto pool = makePool();
    {
        QuorlTest::Network network;
        network.node("object")->age(pool) = Ageable(4);
    }

    EXPECT_EQ(pool->ObjectAgePool().size(), 1U);
}

TEST(VObjectAge, BelongsToAContextOrWithoutOneToTheObject)
{
    QuorlTest::Network network;
    const auto object = network.node("object");
    const auto pool = makePool();

    EXPECT_EQ(object->age(pool), Ageable::Ooooold);
    EXPECT_EQ(object->age({}), object->LocalAge);
    EXPECT_EQ(&object->age(pool), &pool->ObjectAgePool()(*object));
}

TEST(VObjectIsOutOfMemory, SaysWhatCouldNotBeHeldAndForWhom)
{
    struct Picture final : Tolmen::Cacheable
    {
    };
    QuorlTest::Network network;
    const auto object = network.node("object");
    const RefPtr<Tolmen::Cacheable> picture(new Picture);
    const Tolmen::Cache::OutOfMemory reason(picture, "full");
    const VObjectIsOutOfMemory failure(reason, WeakVObjectPtr(object));

    EXPECT_STREQ(failure.what(), "full");
    EXPECT_EQ(failure.object, picture);
    EXPECT_EQ(failure.Object, object);
}

TEST(VObjectUserInfo, SitsAmongTheInterfacesOfAnObject)
{
    QuorlTest::Network network;
    const auto object = network.node("object");
    object->addInterface(new VObjectUserInfo("made by hand"));

    const RefPtr<VObjectUserInfo> info = object->findInterface(typeid(VObjectUserInfo));
    ASSERT_TRUE(info);
    EXPECT_EQ(info->text, "made by hand");
}

TEST(VConnectionValidator, TakesOverStrictlyYoungerConnectionsOnly)
{
    VConnectionValidator validator;
    VRequest request({}, false);
    request.NewestConnectionObject = 9;
    EXPECT_EQ(static_cast<Ageable&>(validator), Ageable::GlobalTime);

    request.NewestConnection = validator;
    validator.taintFromRequest(request);
    EXPECT_EQ(validator.Taint, 0) << "equal";
    request.NewestConnection = Ageable(0);
    validator.taintFromRequest(request);
    EXPECT_EQ(validator.Taint, 0) << "older";
    request.NewestConnection = QuorlTest::tick();
    validator.taintFromRequest(request);
    EXPECT_EQ(validator.Taint, 9);
    EXPECT_EQ(static_cast<Ageable&>(validator), request.NewestConnection);
}

TEST(VConnectionValidatorList, TaintsWithoutMovingAges)
{
    const RefPtr<VConnectionValidator> validator(new VConnectionValidator);
    const Ageable before = *validator;
    VConnectionValidatorList list;
    list.insertConnectionValidator(validator);
    list.insertConnectionValidator(validator);
    list.insertConnectionValidator(
        WeakPtr<VConnectionValidator>(RefPtr<VConnectionValidator>(new VConnectionValidator)));
    QuorlTest::tick();

    list.taintConnectionValidators(0x100000005L);

    EXPECT_EQ(validator->Taint, 5) << "reduced to 32 bits";
    EXPECT_EQ(static_cast<Ageable&>(*validator), before);
    VRequest request({}, false);
    request.NewestConnection = QuorlTest::tick();
    request.NewestConnectionObject = 8;
    list.taintFromRequest(request);
    EXPECT_EQ(validator->Taint, 8);
}

} // namespace
} // namespace Quorl
