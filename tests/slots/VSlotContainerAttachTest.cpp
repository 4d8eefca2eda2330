#include <quorl/objects/VConnectionValidator.h>
#include <quorl/services/VActionNotifier.h>
#include <quorl/slots/VSlotContainer.h>
#include <tests/support/CapturedOutput.h>
#include <tests/support/Node.h>

#include <gtest/gtest.h>

namespace Quorl
{
namespace
{

using QuorlTest::EmptyParameter;
using QuorlTest::makeParameter;
using QuorlTest::Network;
using QuorlTest::outputOf;
using QuorlTest::ticksOf;

/// Hears of attachments, and objects to them if told so.
struct Attachments final : VActionNotifier
{
    bool attachPrefix(const RefPtr<VParameter>& parameter, const RefPtr<VSlot>& slot) override
    {
        log += "before ";
        sawOld = !(slot->Parameter == parameter);
        return allows;
    }
    void attachPostfix(const RefPtr<VSlot>& slot) override
    {
        if (validator) taint = validator->Taint;
        log += "after ";
        clock = Ageable::GlobalTime.stamp();
        last = slot;
    }
    bool allows = true;
    bool sawOld = false;
    string log;
    long long clock = 0;
    WeakPtr<VSlot> last;
    RefPtr<VConnectionValidator> validator;
    int taint = 0;
};

struct Attach : testing::Test
{
    void SetUp() override { ASSERT_TRUE(heard->activate()); }

    Network network;
    RefPtr<QuorlTest::Node> source = network.node("source");
    RefPtr<QuorlTest::Node> object = network.node("object");
    RefPtr<VSlot> slot = object->input("x");
    RefPtr<VParameter> output = source->output("out");
    RefPtr<Attachments> heard{new Attachments};
};

using VSlotContainerAttachParameter = Attach;
using VSlotContainerAttach = Attach;

TEST(VSlotContainer, HasATextForEachCodeOfAnAttachment)
{
    const auto message = &VSlotContainer::AttachErrorCodeMessage;
    EXPECT_EQ(message(0), "Attachment ok");
    EXPECT_EQ(message(1), "Attachment not allowed");
    EXPECT_EQ(message(2), "Attachment done to output parameter");
    EXPECT_EQ(message(-1), "Attachment not possible because source parameter not found");
    EXPECT_EQ(message(-2), "Attachment not possible because invalid (null) destination parameter");
    EXPECT_EQ(message(-3), "Attachment not possible because invalid (null) source parameter");
    EXPECT_EQ(message(-4), "Attachment not possible because destination parameter not found");
    EXPECT_EQ(message(-5), "Attachment not possible because incompatible parameter types");
    EXPECT_EQ(message(3), "");
    EXPECT_EQ(message(-6), "");
}

TEST_F(VSlotContainerAttachParameter, StampsTheSlotTheOutputAndThenTheOwner)
{
    EXPECT_EQ(ticksOf([&] { EXPECT_TRUE(VSlotContainer::attachParameter(output, slot, "")); }), 3);

    const auto now = Ageable::GlobalTime.stamp();
    EXPECT_EQ(slot->ConnectionTime.stamp(), now - 2);
    EXPECT_EQ(source->findOutputSlot(output)->ConnectionTime.stamp(), now - 1);
    EXPECT_EQ(object->ConnectionAge().stamp(), now);
    EXPECT_EQ(heard->log, "before after ");
    EXPECT_TRUE(heard->sawOld);
    EXPECT_EQ(heard->clock, now) << "told last";
    EXPECT_EQ(heard->last, slot);
}

TEST_F(VSlotContainerAttachParameter, NeedsTwoTicksForAParameterOfNobody)
{
    const RefPtr<VParameter> free = makeParameter("free");

    EXPECT_EQ(ticksOf([&] { VSlotContainer::attachParameter(free, slot, "m"); }), 2);
    EXPECT_EQ(slot->Member, "m");
}

TEST_F(VSlotContainerAttachParameter, MovesNothingForWhatIsAttachedAlready)
{
    VSlotContainer::attachParameter(output, slot, "");
    heard->log.clear();

    EXPECT_EQ(ticksOf([&] { EXPECT_TRUE(VSlotContainer::attachParameter(output, slot, "")); }), 0);
    EXPECT_EQ(heard->log, "before ") << "asked, but nothing to tell";
}

TEST_F(VSlotContainerAttachParameter, MovesNothingIfAnObserverObjects)
{
    heard->allows = false;

    EXPECT_EQ(ticksOf([&] { EXPECT_FALSE(VSlotContainer::attachParameter(output, slot, "")); }), 0);
    EXPECT_FALSE(slot->Parameter == output);
    EXPECT_EQ(heard->log, "before ");
}

TEST_F(VSlotContainerAttachParameter, RefusesADeadSlotQuietly)
{
    WeakPtr<VSlot> dead = slot;
    slot = RefPtr<VSlot>();
    object->removeParameter("x");

    EXPECT_FALSE(VSlotContainer::attachParameter(output, dead, ""));
    EXPECT_FALSE(VSlotContainer::attachParameter(output, WeakPtr<VSlot>(), ""));
    EXPECT_EQ(heard->log, "");
}

TEST_F(VSlotContainerAttachParameter, TaintsTheOwnersValidators)
{
    const RefPtr<VConnectionValidator> validator(new VConnectionValidator);
    object->insertConnectionValidator(validator);
    heard->validator = validator;
    VSlotContainer::attachParameter(output, slot, "");

    EXPECT_EQ(validator->Taint, object->ID);
    EXPECT_EQ(heard->taint, object->ID) << "before it is told";
}

TEST_F(VSlotContainerAttachParameter, TakesANullParameterToEmptyASlot)
{
    EXPECT_TRUE(VSlotContainer::attachParameter({}, slot, ""));
    EXPECT_FALSE(slot->Parameter);
}

TEST_F(VSlotContainerAttach, AnswersZeroForAParameterAndItself)
{
    EXPECT_EQ(ticksOf([&] { EXPECT_EQ(object->attach(slot->Parameter, slot->Parameter, ""), 0); }),
              0);
}

TEST_F(VSlotContainerAttach, ReplacesWhatShowsTheDestination)
{
    EXPECT_EQ(object->attach(slot->Parameter, output, ""), VSlotContainer::AttachOk);
    EXPECT_EQ(slot->Parameter, output);
}

TEST_F(VSlotContainerAttach, AnswersZeroWhateverAnObserverSaid)
{
    heard->allows = false;

    EXPECT_EQ(object->attach(slot->Parameter, output, ""), 0);
    EXPECT_FALSE(slot->Parameter == output);
}

TEST_F(VSlotContainerAttach, AttachesTheFirstMatchByLevelAlone)
{
    const auto higher = object->addParameter("y", 1, slot->Parameter, false);
    object->attach(slot->Parameter, output, "");

    EXPECT_EQ(slot->Parameter, output);
    EXPECT_FALSE(higher->Parameter == output);
}

TEST_F(VSlotContainerAttach, GoesToNoLaterLevelWhenAnObserverObjects)
{
    const auto shared = slot->Parameter;
    const auto higher = object->addParameter("y", 1, shared, false);
    heard->allows = false;

    EXPECT_EQ(ticksOf([&] { EXPECT_EQ(object->attach(shared, output, ""), 0); }), 0);
    EXPECT_EQ(higher->Parameter, shared);
    EXPECT_EQ(heard->log, "before ") << "asked once";
}

TEST_F(VSlotContainerAttach, NeedsASource)
{
    EXPECT_EQ(object->attach(slot->Parameter, {}, ""), VSlotContainer::AttachSourceNotFound);
    EXPECT_EQ(object->attach({}, {}, ""), VSlotContainer::AttachSourceNotFound);
}

TEST_F(VSlotContainerAttach, NeedsOneType)
{
    const RefPtr<VParameter> count(
        new VValueParameter<int>(RefPtr<VValue<int>>(new VValue<int>(1)), "count"));

    EXPECT_EQ(object->attach(slot->Parameter, count, ""), VSlotContainer::AttachIncompatibleTypes);
    EXPECT_EQ(object->attach(slot->Parameter, output, "no such member"),
              VSlotContainer::AttachIncompatibleTypes);
    EXPECT_EQ(object->attach({}, output, ""), VSlotContainer::AttachIncompatibleTypes)
        << "nothing is of no type";
}

TEST_F(VSlotContainerAttach, NeedsASlotThatShowsTheDestination)
{
    EXPECT_EQ(object->attach(makeParameter("elsewhere"), output, ""),
              VSlotContainer::AttachDestinationNotFound);
}

TEST_F(VSlotContainerAttach, PutsAParameterWithoutValueIntoTheFirstEmptySlot)
{
    const RefPtr<VParameter> valueless(new EmptyParameter);
    const auto empty =
        object->addSlot(RefPtr<VSlot>(new VSlot(object.rawptr(), {}, "e", "")), 4, false);

    EXPECT_EQ(object->attach({}, valueless, ""), VSlotContainer::AttachOk);
    EXPECT_EQ(empty->Parameter, valueless);
}

TEST_F(VSlotContainerAttach, PassesPropagatingSlotsOnByNameAndType)
{
    const auto other = network.node("other");
    const auto place = other->input("x", 5);
    const auto elsewhere = other->input("y");
    object->input("y");
    slot->Propagates = true;

    EXPECT_EQ(outputOf([&] { EXPECT_EQ(object->connectSlots(other), 1); }),
              "VConnectable.cpp: vobj->touch();\n");
    EXPECT_EQ(place->Parameter, slot->Parameter);
    EXPECT_FALSE(elsewhere->Parameter == object->getParameter("y"));
    EXPECT_EQ(outputOf([&] { EXPECT_EQ(object->connectSlots({}), 0); }), "");
}

TEST_F(VSlotContainerAttach, StaysValidWhenAnObserverEndsTheOwner)
{
    struct Ender final : VActionNotifier
    {
        bool attachPrefix(const RefPtr<VParameter>&, const RefPtr<VSlot>&) override
        {
            if (end) end();
            return true;
        }
        std::function<void()> end;
    };
    const RefPtr<Ender> ender(new Ender);
    ASSERT_TRUE(ender->activate());
    auto* const shortLived = new QuorlTest::Node("short-lived");
    const WeakPtr<VSlot> place = shortLived->input("x");
    ender->end = [&] { shortLived->VManagedObject::remove(); };

    EXPECT_TRUE(VSlotContainer::attachParameter(output, place, ""));
    EXPECT_FALSE(place) << "gone with its owner, after the attachment";
}

} // namespace
} // namespace Quorl
