#include <quorl/slots/VConnectable.h>

#include <quorl/foundation/Interface.h>
#include <quorl/slots/VParameterConnectionConstraint.h>
#include <tests/slots/Connecting.h>
#include <tests/support/CapturedOutput.h>
#include <tests/support/Objection.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

/// Connecting what fits: an output, or an interface, to the first input of its type.
namespace Quorl
{
namespace
{

using QuorlTest::Connecting;
using QuorlTest::makeStructured;
using QuorlTest::makeText;
using QuorlTest::Objection;
using QuorlTest::outputOf;
using QuorlTest::ticksOf;
using testing::ElementsAre;

using VConnectableConnect = Connecting;
using VConnectableInterface = Connecting;

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

TEST_F(Connecting, DefaultsDoNothing)
{
    EXPECT_TRUE(object->setObjectAsChild(source, "child"));
    EXPECT_TRUE(object->setObjectAsChild({}, ""));
    EXPECT_FALSE(object->CreatedFilteredConnection(output));
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
    const RefPtr<ServiceValue> other(new ServiceValue);
    source->addParameter("c", 0, new VValueParameter<Service*>(other, "other"), false);
    const RefPtr<Service> service(new Service);
    const Ageable connection = source->ConnectionAge();

    EXPECT_EQ(ticksOf([&] { EXPECT_EQ(object->ConnectInterface(source, service), slot); }), 1);

    EXPECT_EQ(value->taken, service);
    EXPECT_FALSE(other->taken);
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

} // namespace
} // namespace Quorl
