#include <quorl/slots/VSlotSet.h>

#include <tests/slots/ContainerTestTypes.h>

#include <gtest/gtest.h>

#include <vector>

namespace Quorl
{
namespace
{

using QuorlTest::makeSlot;
using QuorlTest::Network;
using QuorlTest::SlotVisit;

TEST(VSlotSet, HoldsOneSlotOfEachName)
{
    Network network;
    const auto object = network.node("object");
    const auto first = makeSlot(object.rawptr(), "x");
    const auto second = makeSlot(object.rawptr(), "x");
    VSlotSet slots;

    EXPECT_EQ(slots.insertSlot(first, false), first);
    EXPECT_FALSE(slots.insertSlot(second, false));
    EXPECT_FALSE(slots.insertSlot({}, true));
    EXPECT_TRUE(slots.contains(first));
    EXPECT_FALSE(slots.contains(second));
    EXPECT_EQ(slots.insertSlot(second, true), second);
    EXPECT_EQ(slots.insertSlot(*slots.begin(), true), second) << "by itself";
    EXPECT_EQ(slots.findByName("x"), second);
    EXPECT_EQ(slots.findFirstParameter(second->Parameter), second);
    EXPECT_FALSE(slots.findFirstParameter(first->Parameter));
    EXPECT_TRUE(slots.removeSlot("x"));
    EXPECT_FALSE(slots.removeSlot("x"));
    EXPECT_FALSE(slots.findByName("x"));
}

TEST(VSlotSet, VisitsItsSlotsByNameWithTheLevelGiven)
{
    Network network;
    const auto object = network.node("object");
    VSlotSet slots;
    for (const char* name : {"b", "a", "c"})
        slots.insertSlot(makeSlot(object.rawptr(), name), false);
    SlotVisit all;
    SlotVisit stopped("b");

    EXPECT_EQ(slots.iterate(7, all), 3);
    EXPECT_EQ(all.seen, (std::vector<string>{"a7", "b7", "c7"}));
    EXPECT_EQ(slots.iterate(7, stopped), 1);
}

TEST(VSlotSet, SlotsMayComeAndGoWhileItIsVisited)
{
    struct Change final : VSlotIterator
    {
        explicit Change(VSlotSet& changed) : slots(changed) {}
        bool apply(const RefPtr<VSlot>& slot, int /*expertLevel*/) override
        {
            slots.removeSlot(slot->Name);
            slots.removeSlot("c");
            slots.insertSlot(RefPtr<VSlot>(new VSlot(nullptr, {}, "z", "")), false);
            seen += slot->Name;
            return true;
        }
        VSlotSet& slots;
        string seen;
    };
    VSlotSet slots;
    for (const char* name : {"a", "b", "c", "d"})
        slots.insertSlot(RefPtr<VSlot>(new VSlot(nullptr, {}, name, "")), false);
    Change change(slots);

    EXPECT_EQ(slots.iterate(0, change), 3);
    EXPECT_EQ(change.seen, "abd");
    EXPECT_EQ(slots.size(), 1U);
}

TEST(VSlotSet, VisitsAllThatLiveAroundOneThatEndedBehindItsBack)
{
    VSlotSet slots;
    std::vector<VSlot*> mortals;
    for (const char* name : {"a", "b", "c", "d", "e", "f", "g"})
    {
        mortals.push_back(new VSlot(nullptr, {}, name, ""));
        slots.insertSlot(RefPtr<VSlot>(mortals.back()), false);
    }
    delete mortals[3];
    SlotVisit visit;

    EXPECT_EQ(slots.iterate(0, visit), 6);
    EXPECT_EQ(visit.seen, (std::vector<string>{"a0", "b0", "c0", "e0", "f0", "g0"}));
}

TEST(VSlotSet, PassesOverSlotsThatEndedBehindItsBack)
{
    Network network;
    const auto object = network.node("object");
    auto* const mortal = new VSlot(object.rawptr(), {}, "a", "");
    VSlotSet slots;
    slots.insertSlot(RefPtr<VSlot>(mortal), false);
    const auto slot = makeSlot(object.rawptr(), "b");
    slots.insertSlot(slot, false);
    delete mortal;
    SlotVisit visit;

    EXPECT_EQ(slots.iterate(7, visit), 1);
    EXPECT_EQ(visit.seen, (std::vector<string>{"b7"}));
    EXPECT_EQ(slots.findFirstParameter(slot->Parameter), slot);
    EXPECT_FALSE(slots.findFirstParameter({}));
    EXPECT_FALSE(slots.contains(makeSlot(object.rawptr(), "c")));
}

} // namespace
} // namespace Quorl
