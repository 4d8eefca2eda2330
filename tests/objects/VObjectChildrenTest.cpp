#include <quorl/foundation/Interface.h>
#include <quorl/registry/VAcception.h>
#include <tests/objects/Family.h>
#include <tests/support/CapturedOutput.h>
#include <tests/support/Warnings.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

/// What is made or connected downstream of an object.
namespace Quorl
{
namespace
{

using QuorlTest::Family;
using QuorlTest::FamilyTest;
using QuorlTest::outputOf;
using QuorlTest::Registered;
using QuorlTest::TestCreator;
using QuorlTest::ticksOf;
using QuorlTest::Warnings;
using testing::ElementsAre;
using testing::IsEmpty;

using ConnectChild = FamilyTest;
using CreateChild = FamilyTest;
using WireChild = FamilyTest;

RefPtr<VAcceptInfo> wantDouble(const string& name)
{
    return RefPtr<VAcceptInfo>(new VAcceptInfo(typeid(double), name));
}

TEST_F(ConnectChild, PlugsTheWantedOutputInAndInitialisesTheChild)
{
    const auto child = network.adopt(new Family("child"));
    child->input("y");
    child->input("x");
    object->output("a");
    const RefPtr<VParameter> b = object->output("b");
    const auto [connected, slot] = object->connectChild(child, wantDouble("b"));

    EXPECT_EQ(connected, child);
    ASSERT_TRUE(slot);
    EXPECT_EQ(slot->Name, "x");
    EXPECT_EQ(slot->Parameter, b);
    EXPECT_THAT(child->events, ElementsAre("setup x"));
}

TEST_F(ConnectChild, TakesTheFirstOutputOfTheTypeWithoutAName)
{
    const auto child = network.adopt(new Family("child"));
    child->input("x");
    const RefPtr<VParameter> a = object->output("a");
    object->output("b");
    const VAcception acception(wantDouble(""), {});

    EXPECT_EQ(object->connectAsChild(child, acception).second->Parameter, a);
}

TEST_F(ConnectChild, IsSilentWithoutAChildOrARecord)
{
    const Warnings warnings;
    const auto child = network.adopt(new Family("child"));
    EXPECT_EQ(outputOf([&] {
                  EXPECT_FALSE(object->connectChild({}, wantDouble("")).first.referer);
                  EXPECT_FALSE(object->connectChild(child, {}).first.referer);
                  EXPECT_FALSE(object->connectAsChild(child, VAcception()).second.referer);
              }),
              "");
    EXPECT_THAT(warnings.texts(), IsEmpty());
}

string expectedWarning(const string& location)
{
    return "Type <I>double</I> as requested by an Object Creator (actually found output parameter "
           "type is <I>double</I> ) was not accepted by newly created child object "
           "<B>child</B>.<P>Note that this could be a problem due to mismatch of parameter "
           "constraints, such as a mismatch of a Creator's requested input parameter type, and "
           "the parameters that the child object <B>child</B> (type <I>QuorlTest::Node ) </I> "
           "actually is able to digest." +
           location +
           "<P> All input parameters in this new child object may possibly define constraints "
           "(e.g. an acceptable input field type)  that are more restrictive than the associated "
           "creator's specified input and thus cannot be connected to the available output "
           "parameter <I>object.out</I> as currently provided by <B>object</B>.";
}

TEST_F(ConnectChild, WarnsOnceOfAChildThatRefuses)
{
    const Warnings warnings;
    const auto child = network.node("child");
    object->output("out")->setCreator(object.rawptr());
    VObject::ObjectAndSlot answer;
    EXPECT_EQ(ticksOf([&] {
                  EXPECT_EQ(
                      outputOf([&] { answer = object->connectChild(child, wantDouble("out")); }),
                      "nothing...\n");
              }),
              0);

    EXPECT_FALSE(answer.first.referer);
    EXPECT_FALSE(answer.second.referer);
    EXPECT_THAT(warnings.texts(), ElementsAre(expectedWarning("")));
}

TEST_F(ConnectChild, TellsWhereTheSourceOfTheRefusingChildIs)
{
    const Warnings warnings;
    const auto child = network.node("child");
    const Registered located(new TestCreator("Children/Located", 0, {}, "plugins/located"));
    child->setCreator(WeakPtr<VCreatorBase>(located.handle()));
    object->output("out")->setCreator(object.rawptr());
    outputOf([&] { object->connectChild(child, wantDouble("out")); });

    EXPECT_THAT(warnings.texts(),
                ElementsAre(expectedWarning(" It's source code can be found in <A HREF=\""
                                            "plugins/located\">plugins/located</A>.")));
}

TEST_F(ConnectChild, SaysThatThereIsNothingToConnect)
{
    const Warnings warnings;
    const auto child = network.node("child");
    child->input("x");
    EXPECT_EQ(outputOf([&] {
                  EXPECT_FALSE(object->connectChild(child, wantDouble("none")).first.referer);
              }),
              "VObject::createChild(): No implementation type double found in object...\n");
    EXPECT_THAT(warnings.texts(), IsEmpty());
}

/// A service that a parent may get through one of its inputs.
struct Service : Tolmen::Interface<Service>
{
};

TEST_F(ConnectChild, OffersTheInterfaceWhereThereIsNoOutput)
{
    const auto child = network.node("child");
    const RefPtr<Service> service(new Service);
    const RefPtr<VAcceptInfo> way(
        new VAcceptInfo(typeid(double), RefPtr<Tolmen::InterfaceBase>(service)));
    EXPECT_EQ(outputOf([&] { EXPECT_FALSE(object->connectChild(child, way).first.referer); }),
              "VObject::createChild(): No INTERFACE slot type double found in object...\n");

    class ServiceValue final : public VValue<double>
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
    const RefPtr<ServiceValue> value(new ServiceValue);
    const RefPtr<VSlot> slot = object->addParameter(
        "service", 0, RefPtr<VParameter>(new VValueParameter<double>(value, "service")), false);
    const auto [connected, found] = object->connectChild(child, way);

    EXPECT_EQ(connected, child);
    EXPECT_EQ(found, slot) << "an input of the parent";
    EXPECT_EQ(value->taken, service);
}

TEST_F(WireChild, TakesTheFirstWayThatTheCreatorOfTheChildAccepts)
{
    const auto child = network.adopt(new Family("child"));
    const RefPtr<VSlot> input = child->input("in");
    child->input("second");
    object->output("a");
    const RefPtr<VParameter> b = object->output("b");
    child->setCreator(creator.handle());
    creator->whenOffered = [&](const RefPtr<VObject>& parent) {
        EXPECT_EQ(parent, object);
        return VAcceptInfoList{wantDouble("b"), wantDouble("a")};
    };

    const auto [connected, slot] = child >= object;

    EXPECT_EQ(connected, child);
    EXPECT_EQ(slot, input);
    EXPECT_EQ(input->Parameter, b);
}

TEST_F(WireChild, IsAnEmptyPairWhereSomebodyIsDead)
{
    const auto child = network.node("child");
    child->setCreator(creator.handle());
    creator->whenOffered = [&](const RefPtr<VObject>&) { return VAcceptInfoList{wantDouble("")}; };
    EXPECT_FALSE((RefPtr<VObject>() >= object).first.referer);
    EXPECT_FALSE((RefPtr<VObject>(child) >= RefPtr<VObject>()).second.referer);
    EXPECT_FALSE((RefPtr<VObject>() >= RefPtr<VObject>()).first.referer);
}

TEST_F(WireChild, IsAnEmptyPairAndConnectsNothingWithoutTheCreator)
{
    const auto child = network.node("child");
    const RefPtr<VSlot> input = child->input("in");
    const RefPtr<VParameter> own = input->Parameter;
    object->output("out");
    EXPECT_FALSE((child >= object).first.referer) << "it never had one";
    child->setCreator(creator.handle());
    creator->whenOffered = [&](const RefPtr<VObject>&) { return VAcceptInfoList{wantDouble("")}; };
    creator.drop();
    EXPECT_EQ(outputOf([&] { EXPECT_FALSE((child >= object).first.referer); }), "");
    EXPECT_EQ(input->Parameter, own);
}

TEST_F(WireChild, IsAnEmptyPairIfTheCreatorAcceptsNothingOrBeginsWithNothing)
{
    const auto child = network.node("child");
    child->input("in");
    object->output("out");
    child->setCreator(creator.handle());
    EXPECT_FALSE((child >= object).first.referer);
    creator->whenOffered = [&](const RefPtr<VObject>&) {
        return VAcceptInfoList{RefPtr<VAcceptInfo>(), wantDouble("out")};
    };
    EXPECT_FALSE((child >= object).first.referer);
}

TEST_F(CreateChild, HasTheCreatorNameAndMakeIt)
{
    const auto child = network.adopt(new Family("child"));
    child->input("x");
    creator->whenAsked = [&](const string&, const Tolmen::Intercube&) {
        return RefPtr<VObject>(child);
    };
    const RefPtr<VParameter> output = object->output("out");
    const VAcception acception(wantDouble("out"), creator.handle());
    const auto [connected, slot] = object->createChild(acception, Tolmen::Intercube());

    EXPECT_THAT(creator->wantedNames, ElementsAre("object\x1E"
                                                  "Children/Creator"));
    EXPECT_EQ(connected, child);
    EXPECT_EQ(slot->Parameter, output);
}

TEST_F(CreateChild, AnswersAnEmptyPairIfNothingIsMade)
{
    object->output("out");
    const VAcception acception(wantDouble("out"), creator.handle());
    EXPECT_EQ(outputOf([&] {
                  EXPECT_FALSE(object->createChild(acception, {}).first.referer);
                  EXPECT_FALSE(object->createChild(VAcception(), {}).first.referer);
              }),
              "");
    EXPECT_EQ(creator->wantedNames.size(), 1U);
}

TEST_F(CreateChild, TellsOneWarningIfTheChildRefuses)
{
    const Warnings warnings;
    creator->whenAsked = [this](const string& name, const Tolmen::Intercube&) {
        return RefPtr<VObject>(network.node(name));
    };
    object->output("out");
    VObject::ObjectAndSlot answer;
    outputOf(
        [&] { answer = object->createChild(VAcception(wantDouble("out"), creator.handle()), {}); });

    EXPECT_FALSE(answer.first.referer);
    EXPECT_EQ(warnings.texts().size(), 1U);
}

} // namespace
} // namespace Quorl
