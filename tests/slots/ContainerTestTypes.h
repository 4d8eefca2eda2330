#pragma once

#include <quorl/slots/VSlotContainer.h>
#include <tests/support/Node.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

/// What the tests of slot containers share.
namespace QuorlTest
{

/// A slot with a parameter of its own, both of one name.
inline Quorl::RefPtr<Quorl::VSlot> makeSlot(Quorl::VSlotContainer* owner, const std::string& name)
{
    return Quorl::RefPtr<Quorl::VSlot>(new Quorl::VSlot(owner, makeParameter(name), name, ""));
}

/// Notes the inputs that it is shown, and stops at one of them.
struct SlotVisit final : Quorl::VSlotIterator
{
    explicit SlotVisit(const std::string& last = "") : stopAt(last) {}
    bool apply(const Quorl::RefPtr<Quorl::VSlot>& slot, int expertLevel) override
    {
        seen.push_back(slot->Name + std::to_string(expertLevel));
        return slot->Name != stopAt;
    }
    std::string stopAt;
    std::vector<std::string> seen;
};

struct ContainerTest : testing::Test
{
    Network network;
    Quorl::RefPtr<Node> object = network.node("object");
    Quorl::RefPtr<Quorl::ValuePool> pool = makePool();
};

} // namespace QuorlTest
