#include <quorl/slots/VSlot.h>

#include <quorl/foundation/SpeakPtr.h>
#include <quorl/foundation/VGlobals.h>
#include <quorl/objects/VConnectionValidator.h>
#include <quorl/slots/TypedSlotCreator.h>
#include <quorl/slots/VSlotGlobals.h>
#include <tests/support/CapturedOutput.h>
#include <tests/support/Node.h>
#include <tests/support/Observer.h>

#include <gtest/gtest.h>

namespace Quorl
{
namespace
{

using QuorlTest::makeObserver;
using QuorlTest::makeParameter;
using QuorlTest::makePool;
using QuorlTest::Network;
using QuorlTest::outputOf;
using QuorlTest::tick;
using QuorlTest::ticksOf;

RefPtr<VSlot> makeSlot(VSlotContainer* owner, const RefPtr<VParameter>& parameter,
                       const string& name = "slot")
{
    return RefPtr<VSlot>(new VSlot(owner, parameter, name, ""));
}

TEST(VSlot, IsUnboundAndEmptyByItself)
{
    const VSlot slot;

    EXPECT_TRUE(slot.Unbound);
    EXPECT_FALSE(slot.Propagates);
    EXPECT_FALSE(slot.Cached);
    EXPECT_EQ(slot.InputClass, 0);
    EXPECT_EQ(slot.ConnectionTime, Ageable::Ooooold);
    EXPECT_EQ(slot.age(makePool()), Ageable::Ooooold);
    EXPECT_EQ(slot.ValueAge(makePool()), Ageable::Ooooold);
    EXPECT_FALSE(slot.getValueBase({}));
    EXPECT_FALSE(slot.isNew({}));
    EXPECT_EQ(slot.getType(), typeid(void));
    EXPECT_FALSE(slot.getSource());
    EXPECT_FALSE(slot.getExternalOwner());
    EXPECT_EQ(slot.Name + slot.Member + slot.Text1 + slot.Text2, "");
}

TEST(VSlot, ReportsThatItHasNoOwner)
{
    struct Speaker final : Tolmen::SpeakPtr
    {
        using SpeakPtr::printRS;
        void printRS(const char* b, const char* a, const std::type_info& object, long strong,
                     long weak, const std::type_info&, const void*, const void*) override
        {
            text = string(b) + a;
            type = &object;
            counts = {strong, weak};
        }
        string text;
        const std::type_info* type = nullptr;
        std::pair<long, long> counts;
    };
    Speaker speaker;
    Tolmen::SpeakPtr* const before = Tolmen::SpeakPtr::setSpeaker(&speaker);

    const string text = outputOf([] { const VSlot slot(nullptr, {}, "n", "m"); });

    Tolmen::SpeakPtr::setSpeaker(before);
    EXPECT_EQ(text, "SLOTNAME: N=n M=m\n");
    EXPECT_EQ(speaker.text, "VSlot::VSlot()");
    EXPECT_EQ(*speaker.type, typeid(VSlot));
    EXPECT_EQ(speaker.counts, std::make_pair(0L, 1L));
}

TEST(VSlot, MovesTheClockOnceForTheSameParameterTwice)
{
    Network network;
    const auto slot = makeSlot(network.node("owner").rawptr(), {});
    const RefPtr<VParameter> parameter = makeParameter("p");

    EXPECT_EQ(ticksOf([&] { EXPECT_TRUE(slot->assignParameter(parameter, "")); }), 1);
    EXPECT_EQ(slot->ConnectionTime, Ageable::GlobalTime);
    EXPECT_EQ(ticksOf([&] { EXPECT_FALSE(slot->assignParameter(parameter, "")); }), 0);
    EXPECT_EQ(ticksOf([&] { EXPECT_TRUE(slot->assignParameter(parameter, "m")); }), 1);
}

TEST(VSlot, StampsTheOutputOfItsSourceOneTickLater)
{
    Network network;
    const auto source = network.node("source");
    const auto object = network.node("object");
    const RefPtr<VParameter> output = source->output("out");
    const auto slot = object->input("x");

    EXPECT_EQ(ticksOf([&] { slot->assignParameter(output, ""); }), 2);

    EXPECT_EQ(source->findOutputSlot(output)->ConnectionTime, Ageable::GlobalTime);
    EXPECT_EQ(slot->ConnectionTime.stamp(), Ageable::GlobalTime.stamp() - 1);
    EXPECT_TRUE(source->isNewlyConnected(output, makePool()));
}

TEST(VSlot, StampsItselfAloneIfItsSourceHasNoSuchOutput)
{
    Network network;
    const auto source = network.node("source");
    const auto slot = network.node("object")->input("x");
    const RefPtr<VParameter> parameter = makeParameter("p");
    parameter->setSource(WeakPtr<VSlotContainer>(source.rawptr()));

    EXPECT_EQ(ticksOf([&] { EXPECT_TRUE(slot->assignParameter(parameter, "")); }), 1);
}

TEST(VSlot, IsAttachedWithoutAnOwnerToo)
{
    const RefPtr<VSlot> slot(new VSlot);
    const RefPtr<VParameter> parameter = makeParameter("p");

    EXPECT_EQ(ticksOf([&] { EXPECT_TRUE(slot->attachSource(parameter)); }), 1);
    EXPECT_EQ(slot->Parameter, parameter);
}

TEST(VSlot, IsAsYoungAsItsConnectionOrItsValue)
{
    Network network;
    const auto object = network.node("object");
    const RefPtr<VParameter> parameter = makeParameter("p");
    const auto slot = makeSlot(object.rawptr(), {});
    slot->assignParameter(parameter, "");
    const auto pool = makePool();

    EXPECT_EQ(&slot->age(pool), &slot->ConnectionTime) << "the connection is younger";
    parameter->defaultValue->age() = slot->ConnectionTime;
    EXPECT_EQ(&slot->age(pool), &slot->ConnectionTime) << "at equal ages";
    parameter->touchValue(pool);
    EXPECT_EQ(&slot->age(pool), &parameter->defaultValue->age());
    EXPECT_EQ(&slot->ValueAge(pool), &parameter->defaultValue->age());
    EXPECT_TRUE(slot->isNew(pool));
    object->age(pool) = Ageable::GlobalTime;
    EXPECT_FALSE(slot->isNew(pool));
}

TEST(VSlot, MakesTheVariableOfALocalParameterExceptForItsValueAge)
{
    Network network;
    const RefPtr<VParameter> parameter = makeParameter("p");
    parameter->Localize();
    const auto slot = makeSlot(network.node("object").rawptr(), parameter);
    const auto pool = makePool();

    EXPECT_EQ(&slot->ValueAge(pool), &parameter->defaultValue->age());
    EXPECT_FALSE(pool->findVariable(parameter));
    tick();
    EXPECT_EQ(slot->age(pool), Ageable::GlobalTime);
    EXPECT_TRUE(pool->findVariable(parameter));
    EXPECT_EQ(&slot->ValueAge(pool), &pool->findVariable(parameter)->age());
}

TEST(VSlot, HasNoValueAgeIfItsParameterHasNoValue)
{
    const RefPtr<VParameter> empty(new QuorlTest::EmptyParameter);
    const auto slot = makeSlot(nullptr, empty);

    EXPECT_EQ(&slot->ValueAge(makePool()), &Ageable::Ooooold);
    empty->Localize();
    EXPECT_EQ(&slot->ValueAge(makePool()), &Ageable::Ooooold);
}

TEST(VSlot, AttachesTheWholeParameterOfAnotherSlot)
{
    Network network;
    const auto object = network.node("object");
    const auto slot = object->input("x");
    const auto other = object->input("y");
    other->Member = "member";

    EXPECT_TRUE(slot->attachSlot(other));
    EXPECT_EQ(slot->Parameter, other->Parameter);
    EXPECT_EQ(slot->Member, "");
    EXPECT_FALSE(slot->attachSlot({}));
    EXPECT_FALSE(slot->attachSlot(makeSlot(object.rawptr(), {})));
    EXPECT_FALSE(slot->attachSource({}));
}

TEST(VSlot, KnowsWhoseParameterItShows)
{
    Network network;
    const auto source = network.node("source");
    const auto object = network.node("object");
    const RefPtr<VParameter> output = source->output("out");
    const auto slot = object->input("x");
    EXPECT_FALSE(slot->getSource());
    EXPECT_FALSE(slot->getExternalOwner()) << "a parameter of nobody else's";

    slot->attachSource(output);

    EXPECT_EQ(slot->getSource(), source);
    EXPECT_EQ(slot->getExternalOwner(), object);
    EXPECT_FALSE(source->findOutputSlot(output)->getExternalOwner()) << "its own";
}

TEST(VSlot, TaintsTheValidatorsOfItsSourceWhenItEnds)
{
    Network network;
    const auto source = network.node("source");
    const auto object = network.node("object");
    network.connect(source, object, "x");
    const RefPtr<VConnectionValidator> validator(new VConnectionValidator);
    source->insertConnectionValidator(validator);

    object->removeParameter("x");

    EXPECT_EQ(validator->Taint, source->ID);
}

TEST(VSlot, OwnsItsParameterAndItsNotifiersButNotItsContainer)
{
    Network network;
    RefPtr<VSlotContainer> owner(new VSlotContainer);
    auto slot = makeSlot(owner.rawptr(), makeParameter("p"));
    const WeakPtr<VParameter> parameter = slot->Parameter;
    const WeakPtr<ValueNotifier> notifier = *slot->Notifiers.insert(makeObserver()).first;
    EXPECT_TRUE(parameter);
    EXPECT_TRUE(notifier);
    owner = RefPtr<VSlotContainer>();
    EXPECT_FALSE(slot->Owner);
    EXPECT_FALSE(slot->isNew(makePool()));
    slot = RefPtr<VSlot>();

    EXPECT_FALSE(parameter);
    EXPECT_FALSE(notifier);
}

TEST(VSlot, TaintsNobodyIfItsSourceIsEndingToo)
{
    const RefPtr<VConnectionValidator> validator(new VConnectionValidator);
    RefPtr<VSlotContainer> owner(new VSlotContainer);
    owner->registerOutput(RefPtr<VParameter>(makeParameter("out")), "out");
    owner->insertConnectionValidator(validator);
    owner = RefPtr<VSlotContainer>();

    EXPECT_EQ(validator->Taint, 0);
}

TEST(VSlot, TakesTheNumberOfAnInputClass)
{
    VGlobals::theGlobals().inputClasses.erase("class of a test");
    VSlot slot;
    slot.setClass("class of a test");
    const int first = slot.InputClass;
    slot.setClass("class of a test");

    EXPECT_EQ(slot.InputClass, first + 1) << "the first one gets one less";
}

TEST(VSlot, GivesTheHandleOfAnObject)
{
    Network network;
    const auto object = network.node("object");

    EXPECT_EQ(VSlot::getVObjectPtr(object.rawptr()), object);
    EXPECT_EQ(VSlot::getVObjectPtr(nullptr).referer, nullptr);
}

class SlotMaker final : public TypedSlotCreator
{
public:
    RefPtr<VSlot> createSlot(VSlotContainer* owner, const string& name, int expertLevel) override
    {
        return owner->addParameter(name, expertLevel, makeParameter(name), false);
    }
};

TEST(TypedSlotCreator, IsFoundByTypeAndByName)
{
    const RefPtr<SlotMaker> maker(new SlotMaker);
    EXPECT_EQ(TypedSlotCreator::getTypedSlotCreator(typeid(float)).referer, nullptr);
    EXPECT_TRUE(TypedSlotCreator::registerTypedSlotCreator(typeid(float), maker));

    EXPECT_EQ(TypedSlotCreator::getTypedSlotCreator(typeid(float)), maker);
    EXPECT_EQ(TypedSlotCreator::getTypedSlotCreator("float"), maker);
    Network network;
    EXPECT_TRUE(TypedSlotCreator::getTypedSlotCreator("float")->createSlot(
        network.node("object").rawptr(), "x", 0));

    EXPECT_TRUE(TypedSlotCreator::unregisterTypedSlotCreator(typeid(float), maker));
    EXPECT_FALSE(TypedSlotCreator::unregisterTypedSlotCreator(typeid(float), maker));
    EXPECT_EQ(TypedSlotCreator::getTypedSlotCreator("float").referer, nullptr);
}

TEST(TypedSlotCreator, ReplacesAnotherAndIsRemovedByItsOwnHandleOnly)
{
    const RefPtr<SlotMaker> first(new SlotMaker);
    const RefPtr<SlotMaker> second(new SlotMaker);
    TypedSlotCreator::registerTypedSlotCreator(typeid(long), first);
    EXPECT_TRUE(TypedSlotCreator::registerTypedSlotCreator(typeid(long), second));

    EXPECT_FALSE(TypedSlotCreator::unregisterTypedSlotCreator(typeid(long), first));
    EXPECT_EQ(TypedSlotCreator::getTypedSlotCreator(typeid(long)), second);
    EXPECT_FALSE(
        TypedSlotCreator::registerTypedSlotCreator(typeid(long), WeakPtr<TypedSlotCreator>()));
    EXPECT_TRUE(TypedSlotCreator::unregisterTypedSlotCreator(typeid(long), second));
}

TEST(VSlotGlobals, AddsToContainersThatAreOnlyDeclared)
{
    Network network;
    const auto object = network.node("object");

    const auto first =
        VSlotGlobals::addParameter(object.rawptr(), "x", 2, makeParameter("x"), false);
    const auto second = VSlotGlobals::addParameter(WeakPtr<VManagedObjectBase>(object), "y", 0,
                                                   makeParameter("y"), false);
    const auto third = makeSlot(object.rawptr(), makeParameter("z"), "z");

    EXPECT_EQ(object->getExpertLevel(first), 2);
    EXPECT_EQ(object->getParameter("y"), second->Parameter);
    EXPECT_EQ(VSlotGlobals::addSlot(object.rawptr(), third, 1, false), third);
    VSlotGlobals::assertionFail(third, typeid(int));
    VSlotGlobals::assertionFail(third.rawptr(), typeid(int));
}

TEST(VSlotGlobals, GivesASlotOfNobodyForWhatIsNoContainer)
{
    const RefPtr<VManagedObjectBase> other(new VManagedObjectBase);
    RefPtr<VSlot> slot;

    const string text = outputOf([&] {
        QuorlTest::errorOutputOf([&] {
            slot = VSlotGlobals::addParameter(WeakPtr<VManagedObjectBase>(other), "x", 0,
                                              makeParameter("x"), false);
        });
    });

    EXPECT_EQ(text, "SLOTNAME: N=x M=\n");
    ASSERT_TRUE(slot);
    EXPECT_FALSE(slot->Owner);
    EXPECT_FALSE(slot->Unbound);
}

} // namespace
} // namespace Quorl
