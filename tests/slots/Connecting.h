#pragma once

#include <quorl/slots/VConnectable.h>
#include <quorl/slots/VValueParameter.h>
#include <tests/support/Node.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

/// What the tests of connections share: an object that is to be connected to another.
namespace QuorlTest
{

inline Quorl::RefPtr<Quorl::VParameter> makeText(const std::string& name, const std::string& text)
{
    return Quorl::RefPtr<Quorl::VParameter>(new Quorl::VValueParameter<std::string>(
        Quorl::RefPtr<Quorl::VValue<std::string>>(new Quorl::VValue<std::string>(text)), name));
}

/// A text with a member "height", which is a number.
inline Quorl::RefPtr<Quorl::VParameter> makeStructured()
{
    class Member final : public Quorl::VValue<double>
    {
    public:
        bool setContainerValue(const Quorl::WeakPtr<Quorl::VValueBase>& /*container*/) override
        {
            return true;
        }
    };
    Quorl::RefPtr<Quorl::VParameter> structured = makeText("structured", "");
    structured->DefaultValue()->components.setValue("height",
                                                    Quorl::RefPtr<Quorl::VValueBase>(new Member));
    return structured;
}

/// An object that has a say in what is connected to it, and notes what it is asked.
class Choosy final : public Node
{
public:
    using Node::Node;

    bool allowParameterReplacement(const Quorl::RefPtr<Quorl::VParameter>& source,
                                   const Quorl::RefPtr<Quorl::VParameter>& destination,
                                   const std::string& slotName, int level) override
    {
        asked.push_back(slotName + " " + std::to_string(level));
        lastSource = source;
        lastDestination = destination;
        return slotName != refused;
    }

    void adjustConnections(const Quorl::RefPtr<Quorl::VSlot>& slot,
                           const Quorl::RefPtr<Quorl::VParameter>& parameter) override
    {
        adjusted.push_back(slot->Name + (slot->Parameter == parameter ? " shows it" : " does not"));
    }

    std::string refused;
    std::vector<std::string> asked;
    std::vector<std::string> adjusted;
    Quorl::RefPtr<Quorl::VParameter> lastSource;
    Quorl::RefPtr<Quorl::VParameter> lastDestination;
};

struct Connecting : testing::Test
{
    Network network;
    Quorl::RefPtr<Choosy> object = network.adopt(new Choosy("object"));
    Quorl::RefPtr<Node> source = network.node("source");
    Quorl::RefPtr<Quorl::VParameter> output = source->output("out");
};

} // namespace QuorlTest
