#include <quorl/slots/VSlotContainer.h>

#include <quorl/objects/VObjectAge.h>
#include <quorl/slots/VSlotSet.h>
#include <tests/slots/ContainerTestTypes.h>

#include <gtest/gtest.h>

/// The ages of a container and of its slots, in each context.
namespace Quorl
{
namespace
{

using QuorlTest::makeParameter;
using QuorlTest::makeSlot;

using VSlotContainerAges = QuorlTest::ContainerTest;

TEST_F(VSlotContainerAges, AreOldInAContextWhereTheContainerNeverRan)
{
    const VSlotContainer& constant = *object;

    EXPECT_EQ(constant.age(pool), Ageable::Ooooold);
    EXPECT_EQ(pool->ObjectAgePool().size(), 1U) << "a mere question enters it";
    object->age(pool) = Ageable(5);
    EXPECT_EQ(constant.age(pool), Ageable(5));
    EXPECT_EQ(&constant.age({}), &object->LocalAge);
}

TEST_F(VSlotContainerAges, TakeTheYoungestOfInputsAndTheirSources)
{
    const auto source = network.node("source");
    const auto slot = network.connect(source, object, "qZelm::ignored by requests");
    object->addSlot(RefPtr<VSlot>(new VSlot(object.rawptr(), {}, "empty", "")), 0, false);
    EXPECT_EQ(object->YoungestInput(pool), slot->ConnectionTime);
    source->age(pool) = QuorlTest::tick();
    EXPECT_EQ(object->YoungestInput(pool), source->age(pool));
    slot->Parameter->touchValue(pool);
    EXPECT_EQ(object->YoungestInput(pool), Ageable::GlobalTime);

    const auto cached = object->input("cached", 3);
    cached->Cached = true;
    cached->Parameter->touchValue(pool);
    EXPECT_EQ(object->YoungestInput(pool), Ageable::GlobalTime);
    EXPECT_LT(object->YoungestUncachedInput(pool), Ageable::GlobalTime);
}

TEST_F(VSlotContainerAges, AreTheContainersOwnInAContextThatHasEnded)
{
    const WeakPtr<ValuePool> left = pool;
    pool = RefPtr<ValuePool>();
    const RefPtr<ValuePool> dead = left;

    EXPECT_EQ(&object->age(dead), &object->LocalAge);
    EXPECT_NE(dead.referer, nullptr);
}

TEST_F(VSlotContainerAges, OfAnInputWithoutValueAreNewerThanNothing)
{
    const RefPtr<VSlot> slot(new VSlot(object.rawptr(), {}, "empty", ""));
    object->addSlot(slot, 0, false);
    slot->ConnectionTime = Ageable::Ooooold;
    EXPECT_FALSE(slot->isNew(pool));
    EXPECT_FALSE(object->hasChanged(slot, pool)) << "though the object never ran";
    EXPECT_FALSE(object->hasChanged(RefPtr<VSlot>(), pool));
}

TEST_F(VSlotContainerAges, MakeTheVariablesOfLocalInputs)
{
    const auto slot = object->input("x");
    slot->Parameter->Localize();
    QuorlTest::tick();

    EXPECT_EQ(object->YoungestInput(pool), Ageable::GlobalTime) << "made by the question";
    EXPECT_TRUE(pool->findVariable(slot->Parameter));
}

TEST_F(VSlotContainerAges, CompareWithInputsOfAllLevels)
{
    const auto slot = object->input("x", 100);
    slot->Parameter->touchValue(pool);

    EXPECT_TRUE(object->HasYoungerInput(pool, 0)) << "the level does not narrow it";
    EXPECT_TRUE(object->hasChanged(slot, pool));
    EXPECT_TRUE(object->hasChanged("x", pool));
    object->age(pool) = Ageable::GlobalTime;
    EXPECT_FALSE(object->HasYoungerInput(pool, 1000));
    EXPECT_FALSE(object->hasChanged(slot, pool));
    EXPECT_FALSE(object->hasChanged("none", pool));
    EXPECT_FALSE(object->hasChanged(RefPtr<VSlot>(), pool));
}

TEST_F(VSlotContainerAges, AnswerForListsOfNames)
{
    object->age(pool) = QuorlTest::tick();
    object->input("a")->Parameter->defaultValue->age() = Ageable(0);
    object->age(pool) = Ageable::GlobalTime;
    EXPECT_FALSE(object->hasChanged(pool, 2, "a", "b"));
    EXPECT_FALSE(object->hasChanged(pool, "a", "b", nullptr));
    object->input("b")->Parameter->touchValue(pool);

    EXPECT_TRUE(object->hasChanged(pool, 2, "a", "b"));
    EXPECT_TRUE(object->hasChanged(pool, 2, "b", "a"));
    EXPECT_FALSE(object->hasChanged(pool, 1, "a", "b"));
    EXPECT_FALSE(object->hasChanged(pool, 0));
    EXPECT_TRUE(object->hasChanged(pool, "a", "b", nullptr));
    EXPECT_FALSE(object->hasChanged(pool, "a", nullptr, "b", nullptr));
}

TEST_F(VSlotContainerAges, TellNewlyConnectedOutputs)
{
    const RefPtr<VParameter> output = object->output("out");
    const RefPtr<VParameter> quiet = object->output("quiet");
    VSlotSet none;
    object->findNewlyConnectedOutputs(pool, none);
    EXPECT_TRUE(none.empty()) << "as old as the object, which never ran";
    EXPECT_FALSE(object->hasNewlyConnectedOutputs(pool));
    object->age(pool) = Ageable::GlobalTime;
    EXPECT_FALSE(object->hasNewlyConnectedOutputs(pool));
    network.node("other")->input("x")->attachSource(output);
    VSlotSet found;
    found.insertSlot(makeSlot(object.rawptr(), "out"), false);
    object->findNewlyConnectedOutputs(pool, found);

    EXPECT_TRUE(object->hasNewlyConnectedOutputs(pool));
    EXPECT_TRUE(object->isNewlyConnected(output, pool));
    EXPECT_FALSE(object->isNewlyConnected(quiet, pool));
    EXPECT_FALSE(object->isNewlyConnected(makeParameter("other"), pool));
    EXPECT_EQ(found.size(), 1U);
    EXPECT_EQ(*found.begin(), object->getOutput("out")) << "in place of its namesake";
}

TEST_F(VSlotContainerAges, CompareWithOutputs)
{
    const RefPtr<VParameter> output = object->output("out");
    object->age(pool) = Ageable::GlobalTime;
    EXPECT_FALSE(object->isYounger(output, pool));
    output->touchValue(pool);

    EXPECT_TRUE(object->isYounger(output, pool));
    EXPECT_FALSE(object->isYounger(makeParameter("other"), pool));
    EXPECT_EQ(object->YoungestOutput(pool), Ageable::GlobalTime);
}

} // namespace
} // namespace Quorl
