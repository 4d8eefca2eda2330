#include <quorl/slots/VSlotContainer.h>

#include <quorl/registry/VAcceptInfo.h>
#include <tests/slots/ContainerTestTypes.h>
#include <tests/support/CapturedOutput.h>

#include <gtest/gtest.h>

#include <vector>

/// The outputs of a container: how they are registered and found.
namespace Quorl
{
namespace
{

using QuorlTest::makeParameter;
using QuorlTest::makeSlot;
using QuorlTest::outputOf;
using QuorlTest::ticksOf;

using VSlotContainerOutputs = QuorlTest::ContainerTest;

struct OutputVisit final : VOutputIterator
{
    explicit OutputVisit(int most = 1000) : left(most) {}
    bool apply(const std::type_info& type, const RefPtr<VSlot>& slot) override
    {
        seen.push_back(slot->Name + ":" + type.name());
        return --left > 0;
    }
    int left;
    std::vector<string> seen;
};

TEST_F(VSlotContainerOutputs, MakeTheContainerTheirSourceAndMoveNoAge)
{
    const RefPtr<VParameter> parameter = makeParameter("p");

    EXPECT_EQ(ticksOf([&] { EXPECT_TRUE(object->registerOutput(parameter, "out")); }), 0);

    EXPECT_EQ(parameter->source, object);
    EXPECT_EQ(object->getOutput("out")->Parameter, parameter);
    EXPECT_EQ(object->findOutputSlot(parameter), object->getOutput("out"));
    EXPECT_EQ(object->getNumberOfOutputs(), 1);
    EXPECT_FALSE(object->registerOutput(RefPtr<VParameter>(), "out"));
    EXPECT_FALSE(object->getOutput("none"));
}

TEST_F(VSlotContainerOutputs, AreNamedAfterTheirParameterIfAtAll)
{
    const RefPtr<VParameter> parameter = makeParameter("p");
    parameter->setCreator(object.rawptr());
    object->registerOutput(parameter, "");
    parameter->setName("changed");

    EXPECT_TRUE(object->getOutput("object.p")) << "as it was called then";
}

TEST_F(VSlotContainerOutputs, MayBeEnteredTwice)
{
    const RefPtr<VParameter> parameter = makeParameter("p");
    object->registerOutput(parameter, "out");

    EXPECT_TRUE(object->registerOutput(parameter, "out"));
    EXPECT_EQ(object->getNumberOfOutputs(), 2);
}

TEST_F(VSlotContainerOutputs, AreRefusedIfTheyHaveAnotherSource)
{
    const auto other = network.node("other");
    const RefPtr<VParameter> foreign = other->output("out");

    EXPECT_EQ(outputOf([&] { EXPECT_FALSE(object->registerOutput(foreign, "as")); }),
              "VSlotContainer::registerOutput(RefPtr<VParameter>) Parameter=out, type=double, "
              "as=as): NOT ADDED - INVALID PARAMETER SOURCE!\n");
    EXPECT_EQ(outputOf([&] {
                  EXPECT_FALSE(object->registerOutput(other->getOutput("out")));
                  EXPECT_FALSE(object->registerOutput(foreign, "as", typeid(int), ""));
                  EXPECT_FALSE(object->registerOutput(foreign, typeid(int), ""));
              }),
              "");
    EXPECT_EQ(object->getNumberOfOutputs(), 0);
}

TEST_F(VSlotContainerOutputs, CanBeSlotsThatExist)
{
    const auto slot = makeSlot(object.rawptr(), "ready");

    EXPECT_TRUE(object->registerOutput(slot));
    EXPECT_EQ(object->getOutput("ready"), slot);
    EXPECT_EQ(slot->Parameter->source, object);
    EXPECT_FALSE(object->registerOutput(RefPtr<VSlot>()));
    EXPECT_FALSE(object->registerOutput(RefPtr<VSlot>(new VSlot(object.rawptr(), {}, "e", ""))));
}

TEST_F(VSlotContainerOutputs, MayStandUnderAnotherTypeWithAMember)
{
    const RefPtr<VParameter> parameter = makeParameter("p");
    EXPECT_TRUE(object->registerOutput(parameter, "as int", typeid(int), "member"));
    EXPECT_TRUE(object->registerOutput(parameter, typeid(char), "c"));

    EXPECT_TRUE(object->implements(typeid(int)));
    EXPECT_FALSE(object->implements(typeid(double)));
    EXPECT_EQ(object->getImplementation(typeid(int), "as int", "member"), parameter);
    EXPECT_FALSE(object->getImplementation(typeid(int), "as int", ""));
    EXPECT_EQ(object->getImplementationSlot(typeid(char), "", "")->Name, "p");
    EXPECT_EQ(object->getImplementationSlot(typeid(char), "p", "c")->Member, "c");
}

TEST_F(VSlotContainerOutputs, AreVisitedByTypeOrAll)
{
    const RefPtr<VParameter> first = object->output("b");
    object->output("a");
    object->registerOutput(first, "c", typeid(int), "");
    OutputVisit doubles;
    OutputVisit all;
    OutputVisit one(1);

    EXPECT_EQ(object->iterateOutputs(doubles, typeid(double)), 2);
    EXPECT_EQ(doubles.seen, (std::vector<string>{"b:d", "a:d"})) << "in the order of registration";
    EXPECT_EQ(object->iterateOutputs(all, typeid(void)), 3);
    EXPECT_EQ(object->iterateOutputs(one, typeid(void)), 1) << "the one that stopped it counts";
    EXPECT_EQ(object->getImplementationSlot(typeid(double), "", "")->Name, "b");
    const RefPtr<Tolmen::StringList> names = object->getOutputs(typeid(double));
    EXPECT_EQ(std::vector<string>(names->begin(), names->end()), (std::vector<string>{"b", "a"}));
}

TEST_F(VSlotContainerOutputs, AreNamedForTheVoidTypeOnlyIfTheyHaveIt)
{
    object->output("number");
    object->registerOutput(RefPtr<VParameter>(new QuorlTest::EmptyParameter), "nothing");

    const RefPtr<Tolmen::StringList> names = object->getOutputs(typeid(void));
    EXPECT_EQ(std::vector<string>(names->begin(), names->end()), std::vector<string>{"nothing"});
    EXPECT_TRUE(object->getOutputs(typeid(char))->empty());
}

TEST_F(VSlotContainerOutputs, MayBeAskedForByAVisitor)
{
    struct Attach final : VOutputIterator
    {
        Attach(const RefPtr<QuorlTest::Node>& o, const RefPtr<VSlot>& p) : owner(o), place(p) {}
        bool apply(const std::type_info&, const RefPtr<VSlot>& slot) override
        {
            return place->attachSlot(slot) && owner->getOutput(slot->Name);
        }
        RefPtr<QuorlTest::Node> owner;
        RefPtr<VSlot> place;
    };
    object->output("out");
    Attach attach(object, network.node("other")->input("x"));

    EXPECT_EQ(object->iterateOutputs(attach, typeid(void)), 1);
    EXPECT_EQ(attach.place->Parameter->source, object);
}

TEST_F(VSlotContainerOutputs, TellWhatFitsASlot)
{
    object->output("out");
    const auto other = network.node("other");

    EXPECT_TRUE(object->provides(other->input("x")));
    EXPECT_FALSE(object->provides(RefPtr<VSlot>()));
    EXPECT_FALSE(object->provides(RefPtr<VSlot>(new VSlot(other.rawptr(), {}, "empty", ""))));
    EXPECT_FALSE(other->provides(other->input("y")));
    const auto infos = object->getAcceptInfoList(typeid(double));
    ASSERT_EQ(infos.size(), 1U);
    EXPECT_EQ(*infos.front()->type, typeid(double));
    EXPECT_EQ(infos.front()->name, "out");
    EXPECT_EQ(infos.front()->weight, 1.0);
    EXPECT_TRUE(object->getAcceptInfoList(typeid(int)).empty());
}

TEST_F(VSlotContainerOutputs, ArePassedOverOnceTheyEndedBehindTheirBack)
{
    auto* const mortal = new VSlot(object.rawptr(), makeParameter("a"), "a", "");
    EXPECT_TRUE(object->registerOutput(RefPtr<VSlot>(mortal)));
    const RefPtr<VParameter> parameter = object->output("b");
    delete mortal;
    const RefPtr<VSlot> slot = object->getOutput("b");
    OutputVisit visit;

    EXPECT_FALSE(object->getOutput("a"));
    EXPECT_EQ(object->iterateOutputs(visit, typeid(double)), 1);
    EXPECT_EQ(object->getOutputs(typeid(double))->size(), 1U);
    EXPECT_EQ(object->getImplementationSlot(typeid(double), "", ""), slot);
    EXPECT_EQ(object->getAcceptInfoList(typeid(double)).size(), 1U);
    EXPECT_EQ(object->getNumberOfOutputs(), 2) << "its entry stays";

    object->age(pool) = QuorlTest::tick();
    EXPECT_FALSE(object->hasNewlyConnectedOutputs(pool));
    network.node("other")->input("x")->attachSource(parameter);
    VSlotSet connected;
    object->findNewlyConnectedOutputs(pool, connected);
    EXPECT_TRUE(object->hasNewlyConnectedOutputs(pool));
    EXPECT_EQ(connected.size(), 1U);
    parameter->touchValue(pool);
    EXPECT_EQ(object->YoungestOutput(pool), Ageable::GlobalTime);
}

} // namespace
} // namespace Quorl
