#include <quorl/slots/VSlotContainer.h>

#include <tests/slots/Connecting.h>
#include <tests/support/CapturedOutput.h>
#include <tests/support/Objection.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

/// Slots that propagate, connected to those of another object.
namespace Quorl
{
namespace
{

using QuorlTest::Connecting;
using QuorlTest::makeStructured;
using QuorlTest::makeText;
using QuorlTest::Node;
using QuorlTest::Objection;
using QuorlTest::outputOf;
using testing::ElementsAre;

using VSlotContainerConnectSlots = Connecting;

TEST_F(VSlotContainerConnectSlots, AsksTheOtherAndCountsWhatObserversRefuse)
{
    const RefPtr<VSlot> mine = source->input("x");
    mine->Propagates = true;
    const RefPtr<VSlot> theirs = object->input("x", 2);
    const RefPtr<VSlot> again = object->input("x", 4);
    {
        const RefPtr<Objection> objection(new Objection);
        ASSERT_TRUE(objection->activate());
        EXPECT_EQ(outputOf([&] { EXPECT_EQ(source->connectSlots(object), 2); }),
                  "VConnectable.cpp: vobj->touch();\n");
    }
    EXPECT_THAT(object->asked, ElementsAre("x 2", "x 4"));
    EXPECT_FALSE(theirs->Parameter == mine->Parameter);

    outputOf([&] { EXPECT_EQ(source->connectSlots(object), 2); });
    EXPECT_EQ(theirs->Parameter, mine->Parameter);
    EXPECT_EQ(again->Parameter, mine->Parameter);
}

TEST_F(VSlotContainerConnectSlots, NeedsAnInputThatHasAParameterOfTheType)
{
    object->addSlot(RefPtr<VSlot>(new VSlot(object.rawptr(), {}, "x", "")), 0, false);
    object->addParameter("x", 1, makeText("other", "type"), false);
    source->input("x")->Propagates = true;
    source->addSlot(RefPtr<VSlot>(new VSlot(source.rawptr(), {}, "void", "")), 0, false)
        ->Propagates = true;
    object->addSlot(RefPtr<VSlot>(new VSlot(object.rawptr(), {}, "void", "")), 0, false);

    EXPECT_EQ(outputOf([&] { EXPECT_EQ(source->connectSlots(object), 0); }),
              "VConnectable.cpp: vobj->touch();\n");
    EXPECT_THAT(object->asked, ElementsAre());
}

TEST_F(VSlotContainerConnectSlots, LeavesOutWhatTheOtherRefuses)
{
    for (const char* name : {"x", "y"}) source->input(name)->Propagates = true;
    const RefPtr<VSlot> refused = object->input("x");
    const RefPtr<VSlot> taken = object->input("y");
    object->refused = "x";

    outputOf([&] { EXPECT_EQ(source->connectSlots(object), 1); });

    EXPECT_THAT(object->asked, ElementsAre("x 0", "y 0"));
    EXPECT_FALSE(refused->Parameter == source->getParameter("x"));
    EXPECT_EQ(taken->Parameter, source->getParameter("y"));
}

TEST_F(VSlotContainerConnectSlots, KeepsTheMemberOfTheOther)
{
    const RefPtr<VParameter> structured = makeStructured();
    const RefPtr<VSlot> mine = source->addParameter("x", 0, structured, false);
    mine->Propagates = true;
    const RefPtr<VSlot> theirs(new VSlot(object.rawptr(), makeStructured(), "x", "height"));
    object->addSlot(theirs, 0, false);
    outputOf([&] { EXPECT_EQ(source->connectSlots(object), 0) << "a number is no text"; });
    theirs->Member = "";
    mine->Member = "";
    outputOf([&] { EXPECT_EQ(source->connectSlots(object), 1); });
    EXPECT_EQ(theirs->Parameter, structured);
    EXPECT_EQ(theirs->Member, "");
}

TEST_F(VSlotContainerConnectSlots, BearsThatInputsAreRemovedMeanwhile)
{
    struct Removing final : Node
    {
        using Node::Node;
        bool allowParameterReplacement(const RefPtr<VParameter>&, const RefPtr<VParameter>&,
                                       const string& slotName, int) override
        {
            removeParameter(slotName);
            other->removeParameter(slotName);
            return true;
        }
        RefPtr<Node> other;
    };
    const RefPtr<Removing> removing(new Removing("removing"));
    removing->other = source;
    for (const char* name : {"a", "b", "c"})
    {
        source->input(name)->Propagates = true;
        removing->input(name);
    }
    outputOf([&] { EXPECT_EQ(source->connectSlots(removing), 3); });
    EXPECT_EQ(source->getNumberOfInputs(), 0);
    EXPECT_EQ(removing->getNumberOfInputs(), 0);
    removing->other = RefPtr<Node>();
    removing->VManagedObject::remove();
}

TEST_F(VSlotContainerConnectSlots, WritesItsLineThoughNothingFits)
{
    source->input("x")->Propagates = true;
    object->input("y");

    EXPECT_EQ(outputOf([&] { EXPECT_EQ(source->connectSlots(object), 0); }),
              "VConnectable.cpp: vobj->touch();\n");
}

} // namespace
} // namespace Quorl
