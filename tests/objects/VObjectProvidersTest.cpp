#include <quorl/objects/VObjectUserInfo.h>
#include <quorl/registry/VInputCreator.h>
#include <quorl/services/VActionNotifier.h>
#include <tests/objects/Family.h>
#include <tests/support/CapturedOutput.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

/// What is made upstream of an object.
namespace Quorl
{
namespace
{

using QuorlTest::FamilyTest;
using QuorlTest::Node;
using QuorlTest::outputOf;
using QuorlTest::Registered;
using QuorlTest::ticksOf;
using testing::ElementsAre;
using testing::IsEmpty;

struct Providers : FamilyTest
{
    /// Has the creator make nodes with an output "out".
    void letItMakeProviders()
    {
        creator->whenAsked = [this](const string& name, const Tolmen::Intercube& context) {
            const RefPtr<Node> node = network.node(name);
            node->output("out");
            source = context.findInterface(typeid(VActionNotifier::CreationSource));
            preferences = context.findInterface(typeid(VCreationPreferences));
            return RefPtr<VObject>(node);
        };
    }

    RefPtr<VActionNotifier::CreationSource> source; // what the creator was told
    RefPtr<VCreationPreferences> preferences;
};

using CreateInput = Providers;
using AttachNewObject = Providers;

TEST_F(CreateInput, MakesAnObjectForASlotAndAttachesIt)
{
    letItMakeProviders();
    const RefPtr<VSlot> slot = object->input("x");
    Tolmen::Intercube context;
    const RefPtr<VObject> input =
        object->createInput(WeakPtr<VCreatorBase>(creator.handle()), slot, "supply", context);

    ASSERT_TRUE(input);
    EXPECT_EQ(input->getName(), "supply");
    ASSERT_TRUE(source);
    EXPECT_EQ(source->slot, slot);
    EXPECT_EQ(slot->getSource(), input);
    EXPECT_THAT(object->events, ElementsAre("input x supply out"));
}

TEST_F(CreateInput, AnswersNothingIfNothingIsMade)
{
    const RefPtr<VSlot> slot = object->input("x");
    Tolmen::Intercube context;
    const WeakPtr<VCreatorBase> maker(creator.handle());

    EXPECT_EQ(ticksOf([&] {
                  EXPECT_FALSE(object->createInput(maker, slot, "x", context).referer);
                  EXPECT_FALSE(object->createInput({}, slot, "x", context).referer);
                  EXPECT_FALSE(object->createInput(maker, {}, "x", context).referer);
              }),
              0);
    EXPECT_THAT(object->events, IsEmpty());
}

TEST_F(CreateInput, AnswersTheObjectThoughItDoesNotFit)
{
    creator->whenAsked = [this](const string& name, const Tolmen::Intercube&) {
        return RefPtr<VObject>(network.node(name)); // without any output
    };
    const RefPtr<VSlot> slot = object->input("x");
    Tolmen::Intercube context;

    EXPECT_TRUE(
        object->createInput(WeakPtr<VCreatorBase>(creator.handle()), slot, "useless", context));
    EXPECT_FALSE(slot->getSource());
    EXPECT_THAT(object->events, IsEmpty());
}

TEST_F(CreateInput, TellsNothingOfASlotThatIsNoInputOfTheObject)
{
    letItMakeProviders();
    const RefPtr<VSlot> slot = network.node("other")->input("x");
    Tolmen::Intercube context;

    EXPECT_TRUE(
        object->createInput(WeakPtr<VCreatorBase>(creator.handle()), slot, "supply", context));
    EXPECT_FALSE(slot->getSource());
    EXPECT_THAT(object->events, IsEmpty());
}

TEST_F(CreateInput, CarriesTheMemberOfTheOutputOver)
{
    creator->whenAsked = [this](const string& name, const Tolmen::Intercube&) {
        class Member final : public VValue<double>
        {
        public:
            bool setContainerValue(const WeakPtr<VValueBase>&) override { return true; }
        };
        const RefPtr<Node> node = network.node(name);
        const RefPtr<VParameter> structured(
            new VValueParameter<string>(RefPtr<VValue<string>>(new VValue<string>), "structured"));
        structured->DefaultValue()->components.setValue("m", RefPtr<VValueBase>(new Member));
        node->registerOutput(structured, "out", typeid(double), "m");
        return RefPtr<VObject>(node);
    };
    const RefPtr<VSlot> slot = object->input("x");
    Tolmen::Intercube context;
    object->createInput(WeakPtr<VCreatorBase>(creator.handle()), slot, "supply", context);

    EXPECT_EQ(slot->Member, "m");
    EXPECT_THAT(object->events, ElementsAre("input x supply structured"));
}

TEST_F(CreateInput, IsReachedFromTheSlot)
{
    letItMakeProviders();
    const RefPtr<VSlot> slot = object->input("x");
    Tolmen::Intercube context;

    EXPECT_TRUE(slot->createInput(WeakPtr<VInputCreatorBase>(creator.handle()), "s", context));
    const Registered plain(new VInputCreatorBase("plain", 0, {}, nullptr));
    EXPECT_FALSE(
        slot->createInput(WeakPtr<VInputCreatorBase>(plain.handle()), "s", context).referer);
    const RefPtr<VSlot> stray(new VSlot);
    EXPECT_FALSE(
        stray->createInput(WeakPtr<VInputCreatorBase>(creator.handle()), "s", context).referer);
}

TEST_F(AttachNewObject, TakesTheBestProviderOfTheType)
{
    letItMakeProviders();
    const RefPtr<VCreationPreferences> wanted(new VCreationPreferences("w"));
    const RefPtr<VSlot> slot = object->input("x");
    registerVInput(typeid(double), creator.handle());

    EXPECT_EQ(object->attachNewObject(slot, "supply", {}, wanted), VSlotContainer::AttachOk);
    EXPECT_EQ(slot->getSource()->getName(), "supply");
    EXPECT_EQ(preferences, wanted) << "handed on to the creator";
    EXPECT_FALSE(source.referer);
    EXPECT_TRUE(unregisterVInput(typeid(double), creator.handle()));
}

TEST_F(AttachNewObject, LeavesTheContextOfTheCallerAsItIs)
{
    const RefPtr<VSlot> slot = object->input("x");
    registerVInput(typeid(double), creator.handle());
    const Tolmen::Intercube context;
    object->attachNewObject(slot, "supply", context,
                            RefPtr<VCreationPreferences>(new VCreationPreferences("w")));
    EXPECT_FALSE(context.findInterface(typeid(VCreationPreferences)));
    EXPECT_TRUE(unregisterVInput(typeid(double), creator.handle()));
}

TEST_F(AttachNewObject, AnswersMinusOneWhereNothingCanBeMade)
{
    const RefPtr<VSlot> slot = object->input("x");
    const RefPtr<VSlot> empty(new VSlot(object.rawptr(), {}, "empty", ""));
    EXPECT_EQ(object->attachNewObject({}, "s", {}, {}), -1);
    EXPECT_EQ(object->attachNewObject(empty, "s", {}, {}), -1);
    EXPECT_EQ(object->attachNewObject(slot, "s", {}, {}), -1) << "nobody provides it";

    const Registered plain(new VInputCreatorBase("plain", 0, {}, nullptr));
    registerVInput(typeid(double), plain.handle());
    EXPECT_EQ(object->attachNewObject(slot, "s", {}, {}), -1) << "it makes no objects";
    unregisterVInput(typeid(double), plain.handle());

    registerVInput(typeid(double), creator.handle());
    EXPECT_EQ(object->attachNewObject(slot, "s", {}, {}), -1) << "it made none";
    creator->whenAsked = [this](const string& name, const Tolmen::Intercube&) {
        return RefPtr<VObject>(network.node(name));
    };
    EXPECT_EQ(object->attachNewObject(slot, "s", {}, {}), -1) << "what it made has no output";
    unregisterVInput(typeid(double), creator.handle());
    EXPECT_FALSE(slot->getSource());
}

/// Hears of new objects.
struct Births final : VActionNotifier
{
    void createVObject(const RefPtr<VObject>& object, const Tolmen::Intercube& /*info*/,
                       const WeakPtr<VCreatorBase>& creator) override
    {
        log.push_back(object->getName() + (creator ? " with" : " without") + " creator, " +
                      object->UserInfo);
    }
    std::vector<string> log;
};

struct ExtractSlot : FamilyTest
{
    ~ExtractSlot() override
    {
        for (const RefPtr<VObject>& one : made) one->VManagedObject::remove();
    }

    std::vector<RefPtr<VObject>> made;
};

TEST_F(ExtractSlot, MakesAnObjectThatProvidesWhatTheInputShows)
{
    const RefPtr<Births> births(new Births);
    ASSERT_TRUE(births->activate());
    const RefPtr<VSlot> slot = object->input("x", 4);
    Tolmen::Intercube context;
    context.addInterface(new VObjectUserInfo("user"));
    RefPtr<VObject> extracted;
    EXPECT_EQ(outputOf([&] { extracted = object->extractSlot(slot, context, "from "); }), "");
    made.push_back(extracted);

    ASSERT_TRUE(extracted);
    EXPECT_EQ(extracted->getName(), "from x");
    int level = -1;
    ASSERT_TRUE(extracted->getSlot("x", level));
    EXPECT_EQ(level, 0);
    EXPECT_EQ(extracted->getParameter("x"), slot->Parameter);
    EXPECT_EQ(slot->getSource(), extracted) << "it provides the shared parameter now";
    EXPECT_THAT(births->log, ElementsAre("from x without creator, user"));
    EXPECT_EQ(extracted->type_key(), "Quorl::VObject");
}

TEST_F(ExtractSlot, SaysThatAConnectedInputHasAnotherSource)
{
    const RefPtr<VSlot> slot = network.connect(network.node("provider"), object, "x");
    RefPtr<VObject> extracted;
    EXPECT_EQ(outputOf([&] { extracted = object->extractSlot(slot, {}, ""); }),
              "VSlotContainer::registerOutput(RefPtr<VParameter>) Parameter=x, type=double, as=x): "
              "NOT ADDED - INVALID PARAMETER SOURCE!\n");
    made.push_back(extracted);

    EXPECT_TRUE(extracted) << "made all the same";
    EXPECT_EQ(slot->getSource()->getName(), "provider");
}

TEST_F(ExtractSlot, NeedsAParameter)
{
    const RefPtr<VSlot> empty(new VSlot(object.rawptr(), {}, "empty", ""));
    EXPECT_FALSE(object->extractSlot(empty, {}, "e").referer);
    EXPECT_FALSE(object->extractSlot({}, {}, "e").referer);
}

} // namespace
} // namespace Quorl
