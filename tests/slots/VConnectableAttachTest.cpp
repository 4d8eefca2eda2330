#include <quorl/slots/VConnectable.h>

#include <tests/slots/Connecting.h>
#include <tests/support/Objection.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

/// Attaching an input that is told to what is told, or to the only thing that fits, and detaching
/// it.
namespace Quorl
{
namespace
{

using QuorlTest::Connecting;
using QuorlTest::makeParameter;
using QuorlTest::makeStructured;
using QuorlTest::makeText;
using QuorlTest::Objection;
using QuorlTest::ticksOf;
using testing::ElementsAre;

using VConnectableAttach = Connecting;
using VConnectableDetach = Connecting;
using VConnectableUnique = Connecting;

TEST_F(VConnectableAttach, NeedsAnInputOfThatName)
{
    EXPECT_EQ(object->attach("x", *source, "out"), VSlotContainer::AttachDestinationNotFound);
}

TEST_F(VConnectableAttach, NeedsAParameterInTheInput)
{
    object->addSlot(new VSlot(object.rawptr(), {}, "x", ""), 0, false);

    EXPECT_EQ(object->attach("x", *source, "out"), VSlotContainer::AttachNullDestination);
}

TEST_F(VConnectableAttach, SharesAnInputOfThatNameAndType)
{
    const RefPtr<VSlot> slot = object->input("x", 3);
    const RefPtr<VSlot> shared = source->input("out", 8); // of the name of the output, too
    EXPECT_EQ(object->attach("x", *source, "out"), VSlotContainer::AttachOk);

    EXPECT_EQ(slot->Parameter, shared->Parameter);
    EXPECT_THAT(object->asked, ElementsAre("x 3"));
    EXPECT_EQ(object->lastSource, shared->Parameter);
}

TEST_F(VConnectableAttach, TakesTheMemberThatIsShared)
{
    const RefPtr<VSlot> slot = object->input("x");
    const RefPtr<VParameter> structured = makeStructured();
    source->addSlot(new VSlot(source.rawptr(), structured, "part", "height"), 0, false);

    EXPECT_EQ(object->attach("x", *source, "part"), VSlotContainer::AttachOk);
    EXPECT_EQ(slot->Parameter, structured);
    EXPECT_EQ(slot->Member, "height");
}

TEST_F(VConnectableAttach, TellsThatTheObjectDoesNotAllowIt)
{
    const RefPtr<VSlot> slot = object->input("x");
    source->input("out");
    object->refused = "x";

    EXPECT_EQ(object->attach("x", *source, "out"), VSlotContainer::AttachNotAllowed);
    EXPECT_FALSE(slot->Parameter == output) << "the output is not tried instead";
    EXPECT_EQ(slot->Parameter->name, "x");
}

TEST_F(VConnectableAttach, FallsBackToTheOutputOfThatName)
{
    const RefPtr<VSlot> slot = object->input("x");
    source->addParameter("out", 0, makeText("out", ""), false); // of another type
    object->refused = "x";                                      // is not asked of outputs

    EXPECT_EQ(object->attach("x", *source, "out"), VSlotContainer::AttachToOutput);
    EXPECT_EQ(slot->Parameter, output);
    EXPECT_TRUE(object->asked.empty());
}

TEST_F(VConnectableAttach, NeedsAnOutputOfThatNameTypeAndMember)
{
    object->input("x");
    EXPECT_EQ(object->attach("x", *source, "none"), VSlotContainer::AttachSourceNotFound);
    source->registerOutput(makeParameter("p"), "with member", typeid(double), "m");
    EXPECT_EQ(object->attach("x", *source, "with member"), VSlotContainer::AttachSourceNotFound);
    object->addParameter("text", 0, makeText("text", ""), false);
    EXPECT_EQ(object->attach("text", *source, "out"), VSlotContainer::AttachSourceNotFound);
}

TEST_F(VConnectableAttach, NeedsAParameterInTheOutput)
{
    object->input("x");
    source->getOutput("out")->assignParameter({}, "");

    EXPECT_EQ(object->attach("x", *source, "out"), VSlotContainer::AttachNullSource);
}

TEST_F(VConnectableAttach, AnswersTheSameWhateverAnObserverSays)
{
    const RefPtr<Objection> objection(new Objection);
    ASSERT_TRUE(objection->activate());
    const RefPtr<VSlot> slot = object->input("x");
    source->input("shared");

    EXPECT_EQ(object->attach("x", *source, "shared"), VSlotContainer::AttachOk);
    EXPECT_EQ(object->attach("x", *source, "out"), VSlotContainer::AttachToOutput);
    EXPECT_EQ(slot->Parameter->name, "x");
}

TEST_F(VConnectableAttach, TakesWhatANamedInputShows)
{
    const RefPtr<VSlot> slot = object->input("x");
    const RefPtr<VSlot> shared = source->input("shared");

    EXPECT_EQ(object->attach(slot->Parameter, source, "shared", ""), VSlotContainer::AttachOk);
    EXPECT_EQ(slot->Parameter, shared->Parameter);
    EXPECT_EQ(object->attach(slot->Parameter, source, "none", ""),
              VSlotContainer::AttachSourceNotFound);
    EXPECT_EQ(object->attach(slot->Parameter, RefPtr<VSlotContainer>(), "shared", ""),
              VSlotContainer::AttachSourceNotFound);
}

TEST_F(VConnectableDetach, LeavesACopyAndAYoungerConnection)
{
    const RefPtr<VSlot> slot = object->input("x");
    output->setValueFromText("42", {}, "", true, {}, nullptr, nullptr);
    slot->attachSource(output);
    const Ageable before = object->ConnectionAge();

    EXPECT_EQ(object->detachSlot(slot), VSlotContainer::AttachOk);

    EXPECT_FALSE(slot->Parameter == output);
    EXPECT_EQ(slot->getValueBase({})->Text(), "42");
    EXPECT_FALSE(slot->getSource());
    EXPECT_GT(object->ConnectionAge(), before);
    output->setValueFromText("7", {}, "", true, {}, nullptr, nullptr);
    EXPECT_EQ(slot->getValueBase({})->Text(), "42") << "cut";
}

TEST_F(VConnectableDetach, KeepsTheValuesOfAllContexts)
{
    const RefPtr<VSlot> slot = object->input("x");
    const RefPtr<ValuePool> pool = QuorlTest::makePool();
    output->Localize();
    output->setValueFromText("3", pool, "", true, {}, nullptr, nullptr);
    slot->attachSource(output);
    object->detachSlot(slot);

    EXPECT_EQ(slot->getValueBase(pool)->Text(), "3");
}

TEST_F(VConnectableDetach, AnswersANegativeCodeAndChangesNothingWhereThereIsNothingToCopy)
{
    EXPECT_LT(object->detachSlot({}), 0);
    const RefPtr<VSlot> empty(new VSlot(object.rawptr(), {}, "empty", ""));
    EXPECT_LT(object->detachSlot(empty), 0);
    const RefPtr<VParameter> single(new QuorlTest::EmptyParameter); // has no copies
    const RefPtr<VSlot> slot(new VSlot(object.rawptr(), single, "single", ""));
    EXPECT_EQ(ticksOf([&] { EXPECT_LT(object->detachSlot(slot), 0); }), 0);
    EXPECT_EQ(slot->Parameter, single);
}

TEST_F(VConnectableUnique, AttachesTheOnlyOutputOfItsType)
{
    const RefPtr<VSlot> slot = object->input("x");
    EXPECT_EQ(object->attachUniqueObject(slot, {}, true), VSlotContainer::AttachOk);
    EXPECT_EQ(slot->Parameter, output);
}

TEST_F(VConnectableUnique, ChoosesOnlyWhatIsObviousUnlessTold)
{
    const RefPtr<VSlot> slot = object->input("x");
    network.node("second")->output("out");

    EXPECT_EQ(object->attachUniqueObject(slot->Parameter, {}, true),
              VSlotContainer::AttachSourceNotFound);
    EXPECT_EQ(object->attachUniqueObject(slot->Parameter, {}, false), VSlotContainer::AttachOk);
    EXPECT_EQ(slot->Parameter, output) << "the first in the registry";
}

TEST_F(VConnectableUnique, TellsWhatIsMissing)
{
    const RefPtr<VSlot> text = object->addParameter("text", 0, makeText("text", ""), false);
    const RefPtr<VSlot> empty(new VSlot(object.rawptr(), {}, "empty", ""));

    EXPECT_EQ(object->attachUniqueObject(RefPtr<VSlot>(), {}, true),
              VSlotContainer::AttachNullSource);
    EXPECT_EQ(object->attachUniqueObject(empty, {}, true), VSlotContainer::AttachSourceNotFound);
    EXPECT_EQ(object->attachUniqueObject(RefPtr<VParameter>(), {}, true),
              VSlotContainer::AttachSourceNotFound);
    EXPECT_EQ(object->attachUniqueObject(text, {}, false), VSlotContainer::AttachSourceNotFound);
}

} // namespace
} // namespace Quorl
