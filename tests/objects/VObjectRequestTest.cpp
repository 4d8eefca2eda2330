#include <quorl/objects/VConnectionValidator.h>
#include <quorl/objects/VObject.h>
#include <tests/support/CapturedOutput.h>
#include <tests/support/Node.h>

#include <gtest/gtest.h>

/// What a request runs, in which order and in which contexts, and who is inside meanwhile.
namespace Quorl
{
namespace
{

using QuorlTest::ask;
using QuorlTest::makePool;
using QuorlTest::Network;
using QuorlTest::outputOf;
using QuorlTest::touchInput;

using Names = std::vector<std::string>;

TEST(VObjectRequest, DoesNothingForAnObjectWithoutInputsThatIsYoungEnough)
{
    Network network;
    const auto object = network.node("alone");
    object->age({}) = Ageable::GlobalTime;

    EXPECT_FALSE(ask(object));
    EXPECT_EQ(object->updates, 0);
}

TEST(VObjectRequest, UpdatesUpstreamFirstAndOnlyOnce)
{
    Network network;
    const auto a = network.node("a");
    const auto b = network.node("b");
    const auto c = network.node("c");
    network.connect(a, b, "x");
    network.connect(b, c, "x");

    EXPECT_TRUE(ask(c, makePool()));
    EXPECT_EQ(network.takeLog(), (Names{"a", "b", "c"}));
}

TEST(VObjectRequest, FindsNothingToDoTheSecondTime)
{
    Network network;
    const auto a = network.node("a");
    const auto b = network.node("b");
    network.connect(a, b, "x");
    const auto pool = makePool();
    ask(b, pool);
    network.takeLog();
    const Ageable after = b->age(pool);

    EXPECT_FALSE(ask(b, pool));
    EXPECT_TRUE(network.log.empty());
    EXPECT_EQ(b->age(pool), after);
}

TEST(VObjectRequest, UpdatesOnceInANewContextThoughNothingChanged)
{
    Network network;
    const auto object = network.node("object");
    ask(object, makePool());
    const auto second = makePool();

    EXPECT_TRUE(ask(object, second));
    EXPECT_FALSE(ask(object, second));
    EXPECT_EQ(object->updates, 2);
}

TEST(VObjectRequest, KeepsContextsApart)
{
    Network network;
    const auto object = network.node("object");
    const auto slot = object->input("x");
    slot->Parameter->Localize();
    const auto first = makePool();
    const auto second = makePool();
    for (const auto& pool : {first, second})
    {
        slot->Parameter->setValueFromText("1", pool, "", true, {}, nullptr, nullptr);
        ask(object, pool);
    }

    slot->Parameter->setValueFromText("2", first, "", true, {}, nullptr, nullptr);

    EXPECT_TRUE(ask(object, first));
    EXPECT_FALSE(ask(object, second));
}

TEST(VObjectRequest, CutsACycleAtTheSlotThatClosesIt)
{
    Network network;
    const auto a = network.node("a");
    const auto b = network.node("b");
    network.connect(a, b, "x");
    network.connect(b, a, "y");
    const auto pool = makePool();
    VObject::VERBOSE_REQUEST = 5;
    const std::string text = outputOf([&] { EXPECT_TRUE(ask(a, pool)); });
    VObject::VERBOSE_REQUEST = 0;

    EXPECT_EQ(network.takeLog(), (Names{"b", "a"}));
    EXPECT_NE(text.find("   (Recursive request in a, stopping here, no action from this slot)\n"),
              std::string::npos);
    EXPECT_FALSE(ask(a, pool));
}

TEST(VObjectRequest, AnswersTrueToTheSameEvaluationInsideIt)
{
    Network network;
    const auto a = network.node("a");
    const auto b = network.node("b");
    network.connect(b, a, "x");
    std::vector<bool> answers;
    b->whenUpdated = [&](VRequest& request) {
        answers.push_back(a->init_request(request, 1.0));
        return true;
    };

    ask(a, makePool());

    EXPECT_EQ(answers, std::vector<bool>{true});
    EXPECT_EQ(network.takeLog(), (Names{"b", "a"}));
}

TEST(VObjectRequest, ShutsAnotherEvaluationOutAndSaysSo)
{
    Network network;
    const auto a = network.node("a");
    const auto b = network.node("b");
    network.connect(b, a, "x");
    std::string text;
    bool answer = false;
    b->whenUpdated = [&](VRequest&) {
        char expected[200];
        std::snprintf(expected, sizeof expected,
                      "VObject[a]::request(): YIKES! Here already is a request (%p) attached, "
                      "can't have no more!!!\n",
                      static_cast<void*>(a->Current));
        text = outputOf([&] { answer = ask(a, makePool()); });
        EXPECT_EQ(text, expected);
        return true;
    };

    ask(a, makePool());

    EXPECT_TRUE(answer);
    EXPECT_FALSE(text.empty());
    EXPECT_EQ(a->updates, 1);
}

TEST(VObjectRequest, NotesTheConnectionsAlsoOfAnObjectThatShutsItOut)
{
    Network network;
    const auto object = network.node("object");
    const VRequest inside(makePool(), false);
    object->addRequest(inside);
    VRequest request(makePool(), false);

    outputOf([&] { EXPECT_TRUE(object->init_request(request, 1.0)); });

    EXPECT_EQ(request.NewestConnection, object->ConnectionAge());
    EXPECT_EQ(request.NewestConnectionObject, object->ID);
    EXPECT_EQ(object->updates, 0);
    EXPECT_EQ(object->Latest, inside.Id);
}

TEST(VObjectRequest, IsInsideAnObjectForTheWalkAndNotForTheUpdate)
{
    Network network;
    const auto source = network.node("source");
    const auto object = network.node("object");
    network.connect(source, object, "x");
    bool wasInsideInWalk = false;
    bool wasInsideInUpdate = true;
    source->whenUpdated = [&](VRequest& request) {
        wasInsideInWalk = object->hasRequest(request);
        return true;
    };
    object->whenUpdated = [&](VRequest& request) {
        wasInsideInUpdate = object->hasRequest(request);
        return true;
    };

    ask(object, makePool());

    EXPECT_TRUE(wasInsideInWalk);
    EXPECT_FALSE(wasInsideInUpdate);
}

TEST(VObjectRequest, SkipsASourceThatIsNotReadyThoughItsParameterCounts)
{
    Network network;
    const auto source = network.node("source");
    const auto object = network.node("object");
    const auto slot = network.connect(source, object, "x");
    source->disableRequestProcessing();
    const auto pool = makePool();
    ask(object, pool);
    touchInput(slot);
    const Ageable newest = Ageable::GlobalTime;

    const std::string text = outputOf([&] { EXPECT_TRUE(ask(object, pool)); });

    EXPECT_EQ(text, "Vobject[source]::request(): skip object, it's not yet ready.\n");
    EXPECT_EQ(source->updates, 0);
    EXPECT_EQ(object->age(pool), newest);
    EXPECT_TRUE(ask(source, pool)) << "can be asked itself";
}

TEST(VObjectRequest, TriesAgainAfterAFailedUpdate)
{
    Network network;
    const auto object = network.node("object");
    const auto pool = makePool();
    object->whenUpdated = [](VRequest&) { return false; };
    const Ageable before = object->age(pool);

    EXPECT_FALSE(ask(object, pool));
    EXPECT_FALSE(ask(object, pool));

    EXPECT_EQ(object->updates, 2);
    EXPECT_EQ(object->age(pool), before);
}

TEST(VObjectRequest, GivesItsPrecisionToTheObjectThatIsAskedAlone)
{
    Network network;
    const auto source = network.node("source");
    const auto object = network.node("object");
    network.connect(source, object, "x");

    ask(object, makePool(), 0.25);

    EXPECT_EQ(object->lastPrecision, 0.25);
    EXPECT_EQ(source->lastPrecision, 1.0);
}

TEST(VObjectRequest, TellsTheValidatorsOfEachObjectThatItVisits)
{
    Network network;
    const auto a = network.node("a");
    const auto b = network.node("b");
    const RefPtr<VConnectionValidator> validator(new VConnectionValidator);
    b->insertConnectionValidator(validator);
    network.connect(a, b, "x");
    a->touchInputSetAge();

    ask(b, makePool());

    EXPECT_EQ(validator->Taint, a->ID);
    EXPECT_EQ(static_cast<Ageable&>(*validator), a->ConnectionAge());
}

TEST(VObjectRequest, EvaluatesAThousandContextsSideBySide)
{
    Network network;
    const auto source = network.node("source");
    const auto object = network.node("object");
    const auto local = source->input("local");
    local->Parameter->Localize();
    network.connect(source, object, "x");
    std::vector<RefPtr<ValuePool>> pools;
    for (int i = 0; i < 1000; ++i)
    {
        pools.push_back(makePool());
        local->Parameter->setValueFromText("1", pools.back(), "", true, {}, nullptr, nullptr);
        EXPECT_TRUE(ask(object, pools.back()));
    }
    network.takeLog();
    local->Parameter->setValueFromText("2", pools[500], "", true, {}, nullptr, nullptr);

    int modified = 0;
    for (const auto& pool : pools) modified += ask(object, pool) ? 1 : 0;

    EXPECT_EQ(modified, 1);
    EXPECT_EQ(network.takeLog(), (Names{"source", "object"}));
}

TEST(VObjectRequest, WalksAHundredThousandObjects)
{
    Network network;
    const auto sink = network.node("sink");
    const auto pool = makePool();
    constexpr int kObjects = 100000;
    for (int i = 0; i < kObjects; ++i)
    {
        const std::string name = std::to_string(i);
        const auto source = network.node(name);
        sink->addParameter(name, 0, source->output(name), false);
    }

    EXPECT_TRUE(ask(sink, pool));
    EXPECT_EQ(network.takeLog().size(), kObjects + 1U);
    EXPECT_FALSE(ask(sink, pool));
    EXPECT_TRUE(network.log.empty());
}

} // namespace
} // namespace Quorl
