#pragma once

#include <tests/support/Node.h>
#include <tests/support/TestCreator.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

/// What the tests of objects that are made beside another share.
namespace QuorlTest
{

/// Notes what happens around it.
class Family final : public Node
{
public:
    using Node::Node;

    void setup(const Quorl::VSlotSet& slots) override
    {
        std::string line = "setup";
        for (const Quorl::RefPtr<Quorl::VSlot>& slot : slots) line += " " + slot->Name;
        events.push_back(line);
    }
    void InputCreation(const Quorl::RefPtr<Quorl::VParameter>& slotParameter,
                       const Quorl::RefPtr<Quorl::VObject>& newObject,
                       const Quorl::RefPtr<Quorl::VParameter>& newParameter) override
    {
        events.push_back("input " + slotParameter->name + " " + newObject->getName() + " " +
                         newParameter->name);
    }

    std::vector<std::string> events;
};

/// An object, and a creator of others.
struct FamilyTest : testing::Test
{
    Network network;
    Quorl::RefPtr<Family> object = network.adopt(new Family("object"));
    Registered<TestCreator> creator{new TestCreator("Children/Creator")};
};

} // namespace QuorlTest
