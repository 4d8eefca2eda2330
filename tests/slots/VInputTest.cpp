#include <quorl/slots/VInputBase.h>

#include <quorl/foundation/VGlobals.h>
#include <quorl/registry/VCreationPreferences.h>
#include <quorl/services/VActionNotifier.h>
#include <quorl/slots/VInputClass.h>
#include <quorl/slots/VInputClassRecognition.h>
#include <quorl/slots/VParameterObjectCreator.h>
#include <quorl/slots/VValueParameter.h>
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
using QuorlTest::outputOf;

class Input final : public VInputBase
{
public:
    using VInputBase::VInputBase;
    void valueChanged(const RefPtr<VValueBase>&, const WeakPtr<ValuePool>&,
                      const ValueNotifierList*, const ValueMap*) override
    {
        ++calls;
    }
    bool SyncFromContextValue(const RefPtr<ValuePool>&, const string&) override { return false; }
    int calls = 0;
};

RefPtr<VParameter> makePreferring(const string& word)
{
    const RefPtr<VParameter> parameter = makeParameter("p", 2.0);
    parameter->preferences = new VCreationPreferences(word);
    return parameter;
}

TEST(VInputBase, MakesAParameterLocalThatPrefersItForGood)
{
    const auto parameter = makePreferring("local");
    {
        const RefPtr<Input> input(new Input(parameter));
        EXPECT_TRUE(parameter->isLocal());
    }
    EXPECT_TRUE(parameter->isLocal());
    const auto other = makePreferring("global");
    const RefPtr<Input> input(new Input(other));
    EXPECT_FALSE(other->isLocal());
}

TEST(VInputBase, MakesItsOwnerLocalAlsoIfItIsSetAgain)
{
    const auto parameter = makePreferring("local");
    const RefPtr<Input> input(new Input(parameter));
    parameter->local = false;
    input->setOwner(parameter);

    EXPECT_TRUE(parameter->isLocal());
}

TEST(VInputBase, SubscribesToALiveOwnerOnlyAndQuietly)
{
    const auto parameter = makeParameter("p");
    const RefPtr<Input> input(new Input(parameter));
    const RefPtr<Input> ownerless(new Input(WeakPtr<VParameter>()));
    RefPtr<VParameter> shortLived = makeParameter("short-lived");
    const RefPtr<Input> left(new Input(shortLived));
    shortLived = RefPtr<VParameter>();

    const string text = outputOf([&] {
        EXPECT_TRUE(input->activateNotification());
        EXPECT_FALSE(ownerless->activateNotification());
        EXPECT_FALSE(left->activateNotification());
    });

    EXPECT_EQ(text, "");
    EXPECT_TRUE(parameter->contains(input));
}

TEST(VInputBase, ComplainsOfBeingHeldByNobodyButSubscribes)
{
    const auto parameter = makeParameter("p");
    Input onTheStack{WeakPtr<VParameter>(parameter)};

    const string text = outputOf([&] { EXPECT_TRUE(onTheStack.activateNotification()); });

    EXPECT_EQ(text, "\n\nbool VInputBase::activateNotification() called from object without strong "
                    "references!! Don't do this!\n\n");
    EXPECT_TRUE(parameter->contains(&onTheStack));
}

TEST(VInputBase, SendsTheDefaultValueToAllOthers)
{
    const auto parameter = makeParameter("p", 2.0);
    parameter->properties = std::make_unique<ValueMap>();
    const RefPtr<Input> input(new Input(parameter));
    input->activateNotification();
    const auto observer = makeObserver();
    parameter->addNotifier(observer);
    const auto pool = QuorlTest::makePool();

    const string text = outputOf([&] { input->notify(nullptr, pool); });

    EXPECT_EQ(text, "void VInputBase::notify()\nvoid VInputBase::notify() --> broadcasting...\n");
    ASSERT_EQ(observer->calls.size(), 1U);
    EXPECT_EQ(observer->calls[0].text, "2");
    EXPECT_EQ(observer->calls[0].pool, pool);
    EXPECT_EQ(observer->calls[0].changes, parameter->properties.get());
    EXPECT_EQ(input->calls, 0);
}

TEST(VInputBase, SendsToAllThoughTheFirstDropsTheParameter)
{
    auto parameter = makeParameter("p", 2.0);
    const WeakPtr<VParameter> watch = parameter;
    const RefPtr<Input> input(new Input(parameter));
    const auto first = makeObserver();
    const auto second = makeObserver();
    first->whenCalled = [&] { parameter = {}; };
    parameter->addNotifier(first);
    parameter->addNotifier(second);

    outputOf([&] { input->notify(nullptr, {}); });

    EXPECT_EQ(first->calls.size(), 1U);
    EXPECT_EQ(second->calls.size(), 1U);
    EXPECT_FALSE(watch) << "it lasted no longer";
}

TEST(VInputBase, WarnsWhenNobodyHoldsItAndItSends)
{
    struct Warnings final : VActionNotifier
    {
        using VActionNotifier::warn;
        void warn(const string& text) override { texts += text; }
        string texts;
    };
    const RefPtr<Warnings> warnings(new Warnings);
    ASSERT_TRUE(warnings->activate());
    const auto parameter = makeParameter("p");
    const Input onTheStack{WeakPtr<VParameter>(parameter)};
    const Input ownerless{WeakPtr<VParameter>()};

    const string text = outputOf([&] { onTheStack.notify(nullptr, {}); });
    EXPECT_EQ(text, "void VInputBase::notify()\nvoid VInputBase::notify() --> broadcasting...\n"
                    "me is not strongly referenced!?\n");
    EXPECT_EQ(warnings->texts, "VInput has no strong references!");
    EXPECT_EQ(outputOf([&] { ownerless.notify(nullptr, {}); }), "void VInputBase::notify()\n");
}

TEST(VInputClass, AnswersOneLessTheFirstTime)
{
    VInputClass& classes = VGlobals::theGlobals().inputClasses;
    const VInputClass before = classes;
    classes.clear();

    EXPECT_EQ(VInputClass::getClass("a"), 0);
    EXPECT_EQ(VInputClass::getClass("a"), 1);
    EXPECT_EQ(VInputClass::getClass("b"), 1);
    EXPECT_EQ(VInputClass::getClass("b"), 2);
    EXPECT_EQ(VInputClass::getClass("a"), 1);

    classes = before;
}

TEST(VInputClassRecognition, NeverIgnoresClassZero)
{
    VInputClassRecognition recognition;
    EXPECT_FALSE(recognition.checkIfIgnoredInputClass(0));
    EXPECT_TRUE(recognition.checkIfIgnoredInputClass(3));
    recognition.classes.insert(3);
    EXPECT_FALSE(recognition.checkIfIgnoredInputClass(3));
    EXPECT_TRUE(recognition.checkIfIgnoredInputClass(-3));
}

/// Makes objects with an output "out"; or none.
class Maker final : public VParameterObjectCreator
{
public:
    RefPtr<VObject> createObject() const override { return made; }
    RefPtr<VObject> made;
};

TEST(VParameterObjectCreator, GivesAnOutputOfANewObjectAsItsSource)
{
    QuorlTest::Network network;
    const auto object = network.node("made");
    const auto output = object->output("out");
    output->setSource(WeakPtr<VSlotContainer>());
    const RefPtr<Maker> maker(new Maker);
    maker->made = object;

    EXPECT_EQ(maker->getImplementation(typeid(double), "out"), output);
    EXPECT_EQ(output->source, object);
    EXPECT_FALSE(maker->getImplementation(typeid(int), "out"));
    EXPECT_FALSE(maker->getImplementation(typeid(double), "other"));
}

TEST(VParameterObjectCreator, GivesNothingWithoutAnObject)
{
    const RefPtr<Maker> maker(new Maker);

    EXPECT_FALSE(maker->getImplementation(typeid(double), "out"));
    EXPECT_EQ(maker->getInterfaceDomain(), typeid(VParameterObjectCreator));
}

} // namespace
} // namespace Quorl
