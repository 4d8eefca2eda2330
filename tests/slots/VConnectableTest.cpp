#include <quorl/foundation/Interface.h>
#include <quorl/services/VActionNotifier.h>
#include <quorl/slots/VConnectable.h>
#include <quorl/slots/VParameterConnectionConstraint.h>
#include <tests/support/CapturedOutput.h>
#include <tests/support/Node.h>
#include <tests/support/Objection.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <vector>

namespace Quorl
{
namespace
{

using QuorlTest::makeParameter;
using QuorlTest::Node;
using QuorlTest::Objection;
using QuorlTest::outputOf;
using QuorlTest::ticksOf;
using testing::ElementsAre;

RefPtr<VParameter> makeText(const string& name, const string& text)
{
    return RefPtr<VParameter>(
        new VValueParameter<string>(RefPtr<VValue<string>>(new VValue<string>(text)), name));
}

/// A text with a member "height", which is a number.
RefPtr<VParameter> makeStructured()
{
    class Member final : public VValue<double>
    {
    public:
        bool setContainerValue(const WeakPtr<VValueBase>& /*container*/) override { return true; }
    };
    RefPtr<VParameter> structured = makeText("structured", "");
    structured->DefaultValue()->components.setValue("height", RefPtr<VValueBase>(new Member));
    return structured;
}

/// An object that has a say in what is connected to it, and notes what it is asked.
class Choosy final : public Node
{
public:
    using Node::Node;

    bool allowParameterReplacement(const RefPtr<VParameter>& source,
                                   const RefPtr<VParameter>& destination, const string& slotName,
                                   int level) override
    {
        asked.push_back(slotName + " " + std::to_string(level));
        lastSource = source;
        lastDestination = destination;
        return slotName != refused;
    }

    void adjustConnections(const RefPtr<VSlot>& slot, const RefPtr<VParameter>& parameter) override
    {
        adjusted.push_back(slot->Name + (slot->Parameter == parameter ? " shows it" : " does not"));
    }

    string refused;
    std::vector<string> asked;
    std::vector<string> adjusted;
    RefPtr<VParameter> lastSource;
    RefPtr<VParameter> lastDestination;
};

struct RefuseAll final : VParameterConnectionConstraint
{
    bool accepts(const VParameter& other, const VParameter& mine) const override
    {
        lastOther = &other;
        lastMine = &mine;
        return false;
    }
    mutable const VParameter* lastOther = nullptr;
    mutable const VParameter* lastMine = nullptr;
};

struct Connecting : testing::Test
{
    QuorlTest::Network network;
    RefPtr<Choosy> object = network.adopt(new Choosy("object"));
    RefPtr<Node> source = network.node("source");
    RefPtr<VParameter> output = source->output("out");
};

using VConnectableConnect = Connecting;
using VConnectableAttach = Connecting;
using VConnectableDetach = Connecting;
using VConnectableInterface = Connecting;
using VConnectableUnique = Connecting;
using VSlotContainerConnectSlots = Connecting;

TEST_F(VConnectableConnect, SaysNothingAndMovesNoAgeWithoutAFittingInput)
{
    object->addParameter("text", 0, makeText("text", ""), false);
    EXPECT_EQ(ticksOf([&] {
                  EXPECT_EQ(outputOf([&] { EXPECT_FALSE(object->Connect(output)); }),
                            "nothing...\n");
              }),
              0);
    EXPECT_TRUE(object->adjusted.empty());
    EXPECT_EQ(outputOf([&] { EXPECT_FALSE(object->Connect({})); }), "");
}

TEST_F(VConnectableConnect, TakesTheFirstByLevelThenByName)
{
    object->input("a", 5);
    object->input("c", 1);
    const RefPtr<VSlot> first = object->input("b", 1);
    object->addParameter("aa", -3, makeText("aa", ""), false);

    EXPECT_EQ(object->Connect(output), first);
    EXPECT_EQ(first->Parameter, output);
    EXPECT_THAT(object->adjusted, ElementsAre("b shows it"));
    EXPECT_THAT(object->asked, ElementsAre("b 1"));
    EXPECT_EQ(object->lastSource, output);
    EXPECT_EQ(object->lastDestination->name, "b");
}

TEST_F(VConnectableConnect, ReachesTheHighestLevelAndTheLowest)
{
    const RefPtr<VSlot> highest = object->input("x", std::numeric_limits<int>::max());
    EXPECT_EQ(object->findReplaceableSlot(output), highest);
    const RefPtr<VSlot> lowest = object->input("x", std::numeric_limits<int>::min());
    EXPECT_EQ(object->findReplaceableSlot(output), lowest);
    EXPECT_FALSE(object->findReplaceableSlot({}));
}

TEST_F(VConnectableConnect, ReplacesWhatIsConnectedAlready)
{
    const RefPtr<VSlot> slot = object->input("x");
    slot->attachSource(network.node("other")->output("other"));

    EXPECT_EQ(object->Connect(output), slot);
    EXPECT_EQ(slot->Parameter, output);
}

TEST_F(VConnectableConnect, PassesOverInputsThatAreEmptyOrRefuse)
{
    object->addSlot(new VSlot(object.rawptr(), {}, "a", ""), 0, false);
    const RefPtr<RefuseAll> constraint(new RefuseAll);
    const RefPtr<VSlot> constrained = object->input("b");
    const RefPtr<VParameter> own = constrained->Parameter;
    own->constraints.push_back(constraint);
    object->input("c");
    object->refused = "c";
    const RefPtr<VSlot> last = object->input("d");

    EXPECT_EQ(object->Connect(output), last);
    EXPECT_THAT(object->asked, ElementsAre("c 0", "d 0"));
    EXPECT_EQ(constraint->lastOther, output.rawptr());
    EXPECT_EQ(constraint->lastMine, own.rawptr());
}

TEST_F(VConnectableConnect, ComparesTheTypeOfTheMemberThatASlotShows)
{
    const RefPtr<VParameter> structured = makeStructured();
    object->addSlot(new VSlot(object.rawptr(), structured, "whole", ""), 0, false);
    const RefPtr<VSlot> part(new VSlot(object.rawptr(), structured, "zpart", "height"));
    object->addSlot(part, 0, false);

    EXPECT_EQ(object->Connect(output), part);
    EXPECT_EQ(part->Member, "") << "the whole parameter was attached";
}

TEST_F(VConnectableConnect, FindsTheSameInputAgainAndAdjustsThoughNothingChanges)
{
    object->input("x");
    object->input("y");
    const RefPtr<VSlot> first = object->Connect(output);

    EXPECT_EQ(ticksOf([&] { EXPECT_EQ(object->Connect(output), first); }), 0);
    EXPECT_THAT(object->adjusted, ElementsAre("x shows it", "x shows it"));
}

TEST_F(VConnectableConnect, AnswersTheInputAndAdjustsAlsoIfAnObserverObjects)
{
    const RefPtr<Objection> objection(new Objection);
    ASSERT_TRUE(objection->activate());
    const RefPtr<VSlot> slot = object->input("x");

    EXPECT_EQ(object->Connect(output), slot);
    EXPECT_FALSE(slot->Parameter == output);
    EXPECT_THAT(object->adjusted, ElementsAre("x does not"));
}

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

/// A service, and a value that stands for it.
struct Service : Tolmen::Interface<Service>
{
};

} // namespace

template <>
struct VValueTrait<Service*>
{
    static bool setValueFromText(Service*& /*datum*/, const string& /*text*/) { return false; }
    static string Text(Service* const& /*datum*/) { return ""; }
};

namespace
{

/// Says that it is of the type of the service, and takes it.
class ServiceValue final : public VValue<Service*>
{
public:
    const std::type_info& getType() const override { return typeid(Service); }
    bool setInterface(const RefPtr<Tolmen::InterfaceBase>& interface) override
    {
        taken = interface;
        return true;
    }
    RefPtr<Service> taken;
};

TEST_F(VConnectableInterface, GivesItToTheFirstInputOfItsTypeAndMakesThatYounger)
{
    const RefPtr<ServiceValue> value(new ServiceValue);
    const RefPtr<VParameter> parameter(new VValueParameter<Service*>(value, "service"));
    source->input("a");
    const RefPtr<VSlot> slot = source->addParameter("b", 0, parameter, false);
    const RefPtr<Service> service(new Service);
    const Ageable connection = source->ConnectionAge();

    EXPECT_EQ(ticksOf([&] { EXPECT_EQ(object->ConnectInterface(source, service), slot); }), 1);

    EXPECT_EQ(value->taken, service);
    EXPECT_EQ(value->age(), Ageable::GlobalTime);
    EXPECT_EQ(slot->Parameter, parameter);
    EXPECT_EQ(source->ConnectionAge(), connection);
}

TEST_F(VConnectableInterface, AnswersNothingWithoutOne)
{
    source->input("a");
    EXPECT_EQ(ticksOf([&] {
                  EXPECT_FALSE(object->ConnectInterface(source, {}));
                  EXPECT_FALSE(object->ConnectInterface(source, new Service));
                  EXPECT_FALSE(object->ConnectInterface({}, new Service));
              }),
              0);
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

TEST_F(Connecting, DefaultsDoNothing)
{
    EXPECT_TRUE(object->setObjectAsChild(source, "child"));
    EXPECT_TRUE(object->setObjectAsChild({}, ""));
    EXPECT_FALSE(object->CreatedFilteredConnection(output));
}

} // namespace
} // namespace Quorl
