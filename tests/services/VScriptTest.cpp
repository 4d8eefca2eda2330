#include <quorl/objects/VObject.h>
#include <quorl/services/VScriptFunctor.h>
#include <quorl/services/VScriptParameters.h>
#include <quorl/services/VScriptTypedValue.h>
#include <quorl/services/VScriptValue.h>
#include <quorl/services/VScriptable.h>
#include <tests/support/Ending.h>
#include <tests/support/Node.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <utility>

namespace Quorl
{
namespace
{

using testing::ElementsAre;

RefPtr<VScriptTypedValue> typed(const string& text)
{
    return RefPtr<VScriptTypedValue>(new VScriptTypedValue(text));
}

RefPtr<VScriptValue> valueOf(const string& text)
{
    return RefPtr<VScriptValue>(new VScriptValue(typeid(string), text));
}

string textOf(const RefPtr<VScriptTypedValue>& value)
{
    return value ? value->value : "null";
}

string textOf(const RefPtr<VScriptValue>& value)
{
    return value ? textOf(value->getUnique()) : "null";
}

// VScriptTypedValue and VScriptValue

TEST(VScriptTypedValue, HoldsItsTextAndTwoThatAreEmpty)
{
    const VScriptTypedValue value("text");
    EXPECT_EQ(value.value, "text");
    EXPECT_EQ(value.Text1 + value.Text2, "");
}

TEST(VScriptValue, IsUniqueInOneTypeOnly)
{
    VScriptValue value;
    EXPECT_EQ(value.polymorphism(), 0U);
    EXPECT_FALSE(value.getUnique().referer);
    value.insert(typeid(int), typed("1"));
    EXPECT_EQ(textOf(value.getUnique()), "1");
    value.insert(typeid(double), typed("1.0"));
    EXPECT_EQ(value.polymorphism(), 2U);
    EXPECT_FALSE(value.getUnique().referer);
}

TEST(VScriptValue, StartsWithWhatItIsGiven)
{
    const VScriptValue shared(typeid(int), typed("1"));
    EXPECT_EQ(textOf(shared.get(typeid(int))), "1");
    const VScriptValue made(typeid(double), "2");
    EXPECT_EQ(textOf(made.get(typeid(double))), "2");
    EXPECT_FALSE(made.hasType(typeid(int)));
    EXPECT_FALSE(made.get(typeid(int)).referer);
}

TEST(VScriptValue, ReplacesAndRemovesByType)
{
    VScriptValue value(typeid(int), "1");
    value.insert(typeid(int), typed("2"));
    EXPECT_EQ(value.polymorphism(), 1U);
    EXPECT_EQ(textOf(value.get(typeid(int))), "2");
    value.remove(typeid(double));
    value.remove(typeid(int));
    EXPECT_EQ(value.polymorphism(), 0U);
    EXPECT_FALSE(value.hasType(typeid(int)));
}

TEST(VScriptValue, PrefersTheFirstOfTwoTypesIfItIsAlive)
{
    VScriptValue value(typeid(double), "second");
    EXPECT_EQ(textOf(value.get(typeid(int), typeid(double))), "second");
    value.insert(typeid(int), typed("first"));
    EXPECT_EQ(textOf(value.get(typeid(int), typeid(double))), "first");
    value.insert(typeid(int), {});
    EXPECT_TRUE(value.hasType(typeid(int)));
    EXPECT_EQ(textOf(value.get(typeid(int), typeid(double))), "second");
    EXPECT_EQ(textOf(value.get(typeid(char), typeid(long))), "null");
}

struct VisitValues final : VScriptValue::iterator
{
    bool apply(const std::type_info& type, VScriptTypedValue& value) override
    {
        seen.push_back(string(type.name()) + value.value);
        if (whenSeen) whenSeen();
        return seen.size() < most;
    }
    std::vector<string> seen;
    std::size_t most = 100;
    std::function<void()> whenSeen;
};

TEST(VScriptValue, VisitsTheLivingInTheOrderOfTypes)
{
    VScriptValue value;
    value.insert(typeid(int), typed("1"));    // "i"
    value.insert(typeid(double), typed("2")); // "d"
    value.insert(typeid(char), {});           // "c"
    value.insert(typeid(long), typed("3"));   // "l"
    VisitValues all;
    EXPECT_EQ(value.iterate(all), 3);
    EXPECT_THAT(all.seen, ElementsAre("d2", "i1", "l3"));

    VisitValues two;
    two.most = 2;
    EXPECT_EQ(value.iterate(two), 1) << "the one that stopped does not count";
}

TEST(VScriptValue, SurvivesAVisitorThatRemovesEverything)
{
    VScriptValue value(typeid(int), "1");
    value.insert(typeid(double), typed("2"));
    VisitValues visitor;
    visitor.whenSeen = [&] {
        value.remove(typeid(int));
        value.remove(typeid(double));
    };
    EXPECT_EQ(value.iterate(visitor), 1);
}

// VScriptParameters

struct VisitParameters final : VScriptParameters::iterator
{
    bool apply(const string& name, const RefPtr<VScriptValue>& value) override
    {
        seen.push_back(name + "=" + textOf(value));
        return seen.size() < most;
    }
    std::vector<string> seen;
    std::size_t most = 100;
};

TEST(VScriptParameters, NumbersWhatIsAppended)
{
    VScriptParameters parameters;
    for (const char* text : {"a", "b", "c"}) EXPECT_TRUE(parameters.append(valueOf(text)));

    EXPECT_EQ(textOf(parameters.find("1")), "a");
    EXPECT_EQ(textOf(parameters.find("2")), "b");
    EXPECT_EQ(textOf(parameters.find("3")), "c");
    EXPECT_FALSE(parameters.find("4").referer);
    EXPECT_FALSE(parameters.find("0").referer);
}

TEST(VScriptParameters, CountsNamedOnesToo)
{
    VScriptParameters parameters;
    EXPECT_TRUE(parameters.insert("name", valueOf("n")));
    parameters.append(valueOf("second"));
    EXPECT_EQ(textOf(parameters.find("2")), "second");
    EXPECT_FALSE(parameters.find("1").referer);
}

TEST(VScriptParameters, MayReplaceANumberThatIsTaken)
{
    VScriptParameters parameters;
    parameters.insert("2", valueOf("v"));
    parameters.append(valueOf("w"));

    EXPECT_EQ(textOf(parameters.find("2")), "w");
    VisitParameters all;
    EXPECT_EQ(parameters.iterate(all), 1);
}

TEST(VScriptParameters, AreFoundByNameOrByPosition)
{
    VScriptParameters parameters;
    parameters.insert("width", valueOf("named"));
    parameters.insert("1", valueOf("placed"));
    EXPECT_EQ(textOf(parameters.find("width", "1")), "named");
    EXPECT_EQ(textOf(parameters.find("height", "1")), "placed");
    parameters.insert("width", {});
    EXPECT_EQ(textOf(parameters.find("width", "1")), "placed") << "a dead entry is passed over";
    EXPECT_EQ(textOf(parameters.find("a", "b")), "null");
}

TEST(VScriptParameters, GiveOneOfTwoTypes)
{
    VScriptParameters parameters;
    const RefPtr<VScriptValue> value(new VScriptValue(typeid(int), "i"));
    parameters.insert("x", value);
    EXPECT_EQ(textOf(parameters.get("x", "1", typeid(double), typeid(int))), "i");
    value->insert(typeid(double), typed("d"));
    EXPECT_EQ(textOf(parameters.get("y", "x", typeid(double), typeid(int))), "d");
    EXPECT_FALSE(parameters.get("y", "z", typeid(double), typeid(int)).referer);
    EXPECT_FALSE(parameters.get("x", "1", typeid(char), typeid(long)).referer);
}

TEST(VScriptParameters, AreVisitedInTheOrderOfTextsTheDeadIncluded)
{
    VScriptParameters parameters;
    for (int number = 0; number < 10; ++number) parameters.append(valueOf("v"));
    parameters.insert("a", {});
    VisitParameters all;
    EXPECT_EQ(parameters.iterate(all), 11);
    EXPECT_EQ(all.seen[0], "1=v");
    EXPECT_EQ(all.seen[1], "10=v");
    EXPECT_EQ(all.seen[2], "2=v");
    EXPECT_EQ(all.seen[10], "a=null");

    VisitParameters two;
    two.most = 2;
    EXPECT_EQ(parameters.iterate(two), 1);
    EXPECT_EQ(two.seen.size(), 2U) << "the second one stopped";
}

// VScriptable

struct Silent final : VScriptFunctor
{
    RefPtr<VScriptParameters> describe() const override { return {}; }
    RefPtr<VScriptValue> call(const RefPtr<VScriptParameters>&, const RefPtr<ValuePool>&) override
    {
        return {};
    }
};

struct VisitFunctors final : VScriptable::iterator
{
    bool apply(const string& name, const RefPtr<VScriptFunctor>& functor) override
    {
        seen.push_back(name + (functor ? "" : " null"));
        if (whenSeen) whenSeen();
        return seen.size() < most;
    }
    std::vector<string> seen;
    std::size_t most = 100;
    std::function<void()> whenSeen;
};

TEST(VScriptable, KeepsFunctorsByName)
{
    VScriptable scriptable;
    const RefPtr<VScriptFunctor> one(new Silent);
    const RefPtr<VScriptFunctor> two(new Silent);
    EXPECT_EQ(scriptable.nFunctors(), 0U);
    EXPECT_EQ(scriptable.insertFunctor("f", one), one);
    EXPECT_EQ(scriptable.insertFunctor("f", two), two);
    EXPECT_EQ(scriptable.nFunctors(), 1U);
    EXPECT_EQ(scriptable.findFunctor("f"), two);
    EXPECT_FALSE(scriptable.findFunctor("F").referer);
    scriptable.removeFunctor("none");
    scriptable.removeFunctor("f");
    EXPECT_EQ(scriptable.nFunctors(), 0U);
}

TEST(VScriptable, TellsWhetherAWalkReachedTheEnd)
{
    VScriptable scriptable;
    VisitFunctors none;
    EXPECT_TRUE(scriptable.iterate(none));
    scriptable.insertFunctor("b", new Silent);
    scriptable.insertFunctor("a", {});
    scriptable.insertFunctor("c", new Silent);
    VisitFunctors all;
    EXPECT_TRUE(scriptable.iterate(all));
    EXPECT_THAT(all.seen, ElementsAre("a null", "b", "c"));
    VisitFunctors two;
    two.most = 2;
    EXPECT_FALSE(scriptable.iterate(two));
    EXPECT_EQ(two.seen.size(), 2U);
}

TEST(VScriptable, SurvivesAVisitorThatChangesIt)
{
    VScriptable scriptable;
    scriptable.insertFunctor("a", new Silent);
    scriptable.insertFunctor("b", new Silent);
    VisitFunctors visitor;
    visitor.whenSeen = [&] {
        scriptable.removeFunctor("a");
        scriptable.removeFunctor("b");
        scriptable.insertFunctor("c", new Silent);
    };
    EXPECT_TRUE(scriptable.iterate(visitor));
    EXPECT_THAT(visitor.seen, ElementsAre("a", "c"));
}

TEST(VScriptable, IsCopiedWithoutItsFunctors)
{
    VScriptable scriptable;
    scriptable.insertFunctor("f", new Silent);
    const VScriptable copied(scriptable);
    EXPECT_EQ(copied.nFunctors(), 0U);

    VScriptable other;
    other.insertFunctor("g", new Silent);
    other = scriptable;
    EXPECT_EQ(other.nFunctors(), 1U);
    EXPECT_TRUE(other.findFunctor("g"));
}

TEST(VScriptable, EachObjectTellsTheNumberOfItsBasicParameters)
{
    QuorlTest::Network network;
    auto object = network.node("scripted");
    object->input("a", 0);
    object->input("b", -1);
    object->input("c", 1);
    EXPECT_EQ(object->nFunctors(), 1U);
    const RefPtr<VScriptFunctor> functor = object->findFunctor("getNumberOfParameters");
    ASSERT_TRUE(functor);
    VisitParameters described;
    ASSERT_TRUE(functor->describe());
    EXPECT_EQ(functor->describe()->iterate(described), 0);

    const RefPtr<VScriptValue> answer = functor->call({}, {});
    ASSERT_TRUE(answer);
    EXPECT_EQ(answer->polymorphism(), 1U);
    EXPECT_EQ(textOf(answer->get(typeid(int))), "2") << "up to level 0";
}

TEST(VScriptable, AFunctorOfAnObjectCanBeTakenAwayBeforeAnybodyAsked)
{
    QuorlTest::Network network;
    auto object = network.node("scripted");
    object->removeFunctor("getNumberOfParameters");

    EXPECT_EQ(object->nFunctors(), 0U);
}

TEST(VScriptable, AFunctorOutlivesItsObject)
{
    auto* const object = new VObject("short-lived", 0, {});
    const RefPtr<VScriptFunctor> functor = object->findFunctor("getNumberOfParameters");
    EXPECT_EQ(textOf(functor->call({}, {})), "0");
    object->VManagedObject::remove();
    EXPECT_FALSE(functor->call({}, {}).referer);
}

// Tables whose contents come back to them

class EndingFunctor final : public VScriptFunctor
{
public:
    explicit EndingFunctor(std::function<void()> act) : act_(std::move(act)) {}
    ~EndingFunctor() override { act_(); }
    RefPtr<VScriptParameters> describe() const override { return {}; }
    RefPtr<VScriptValue> call(const RefPtr<VScriptParameters>& /*arguments*/,
                              const RefPtr<ValuePool>& /*pool*/) override
    {
        return {};
    }

private:
    const std::function<void()> act_;
};

RefPtr<VScriptFunctor> endingFunctor(std::function<void()> act)
{
    return RefPtr<VScriptFunctor>(new EndingFunctor(std::move(act)));
}

RefPtr<VScriptTypedValue> endingTyped(std::function<void()> act)
{
    const RefPtr<QuorlTest::Ending<VScriptTypedValue>> value(
        new QuorlTest::Ending<VScriptTypedValue>("1"));
    value->whenEnded = std::move(act);
    return value;
}

TEST(VScriptable, KeepsAFunctorThatComesWhileTheOnlyOneIsTakenAway)
{
    VScriptable scriptable;
    scriptable.insertFunctor(
        "a", endingFunctor([&] { scriptable.insertFunctor("b", endingFunctor([] {})); }));

    scriptable.removeFunctor("a");

    EXPECT_TRUE(scriptable.findFunctor("b"));
    EXPECT_EQ(scriptable.nFunctors(), 1U);
}

TEST(VScriptable, AnswersTheFunctorWhosePredecessorTakesItAway)
{
    VScriptable scriptable;
    scriptable.insertFunctor("a", endingFunctor([&] { scriptable.removeFunctor("a"); }));
    const RefPtr<VScriptFunctor> next = endingFunctor([] {});

    EXPECT_EQ(scriptable.insertFunctor("a", next), next);
    EXPECT_FALSE(scriptable.findFunctor("a")) << "the former one has ended last";
}

TEST(VScriptable, MayBeAskedByWhatEndsWithIt)
{
    bool wasFound = true;
    {
        VScriptable scriptable;
        for (const char* name : {"a", "b", "c"})
            scriptable.insertFunctor(name, endingFunctor([&] {
                                         wasFound = static_cast<bool>(scriptable.findFunctor("c"));
                                     }));
    }
    EXPECT_FALSE(wasFound);
}

TEST(VScriptValue, KeepsATypeThatComesWhileTheOnlyOneIsTakenAway)
{
    VScriptValue value;
    value.insert(typeid(int), endingTyped([&] { value.insert(typeid(double), typed("2")); }));

    value.remove(typeid(int));

    EXPECT_EQ(value.polymorphism(), 1U);
    EXPECT_EQ(textOf(value.get(typeid(double))), "2");
}

TEST(VScriptValue, ReplacesATextThatTakesItsTypeAway)
{
    VScriptValue value;
    value.insert(typeid(int), endingTyped([&] { value.remove(typeid(int)); }));

    value.insert(typeid(int), typed("2"));

    EXPECT_EQ(value.polymorphism(), 0U) << "the former one has ended last";
}

TEST(VScriptValue, OutlastsAVisitorThatDropsIt)
{
    struct Drop final : VScriptValue::iterator
    {
        bool apply(const std::type_info& /*type*/, VScriptTypedValue& /*value*/) override
        {
            owner = RefPtr<VScriptValue>();
            return true;
        }
        RefPtr<VScriptValue> owner{new VScriptValue(typeid(int), "1")};
    };
    Drop drop;
    drop.owner->insert(typeid(double), typed("2"));

    EXPECT_EQ(drop.owner->iterate(drop), 2);
}

TEST(VScriptParameters, OutlastAVisitorThatDropsThem)
{
    struct Drop final : VScriptParameters::iterator
    {
        bool apply(const string& /*name*/, const RefPtr<VScriptValue>& /*value*/) override
        {
            owner = RefPtr<VScriptParameters>();
            return true;
        }
        RefPtr<VScriptParameters> owner{new VScriptParameters};
    };
    Drop drop;
    for (const char* text : {"a", "b"}) drop.owner->append(valueOf(text));

    EXPECT_EQ(drop.owner->iterate(drop), 2);
}

TEST(VScriptParameters, ReplaceAValueThatDropsThem)
{
    RefPtr<VScriptParameters> parameters(new VScriptParameters);
    const WeakPtr<VScriptParameters> seen = parameters;
    {
        const RefPtr<VScriptValue> value(new VScriptValue);
        value->insert(typeid(int), endingTyped([&] { parameters = RefPtr<VScriptParameters>(); }));
        parameters->insert("x", value);
    }

    EXPECT_TRUE(seen->insert("x", valueOf("next")));

    EXPECT_FALSE(seen);
}

} // namespace
} // namespace Quorl
