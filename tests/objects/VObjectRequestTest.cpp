#include <quorl/foundation/Cache.h>
#include <quorl/objects/VConnectionValidator.h>
#include <quorl/objects/VObject.h>
#include <quorl/objects/VObjectIsOutOfMemory.h>
#include <tests/support/CapturedOutput.h>
#include <tests/support/Node.h>

#include <gtest/gtest.h>

#include <atomic>
#include <cstdio>
#include <stdexcept>
#include <thread>

namespace Quorl
{
namespace
{

using QuorlTest::ask;
using QuorlTest::errorOutputOf;
using QuorlTest::makeParameter;
using QuorlTest::makePool;
using QuorlTest::Network;
using QuorlTest::Node;
using QuorlTest::outputOf;
using QuorlTest::tick;

using Names = std::vector<std::string>;

void touchInput(const RefPtr<VSlot>& slot, const RefPtr<ValuePool>& pool = {})
{
    slot->Parameter->touchValue(pool);
}

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

TEST(VObjectRequest, LeavesTheObjectAsYoungAsItsNewestInputAndNotAsTheClock)
{
    Network network;
    const auto object = network.node("object");
    const auto slot = object->input("x");
    const auto pool = makePool();
    ask(object, pool);
    touchInput(slot);
    const Ageable newest = Ageable::GlobalTime;
    tick();

    EXPECT_TRUE(ask(object, pool));

    EXPECT_EQ(object->age(pool), newest);
    EXPECT_LT(object->age(pool), Ageable::GlobalTime);
}

TEST(VObjectRequest, TakesTheAgeOfAnOutputThatItsSourceTouchedInTheWalk)
{
    Network network;
    const auto source = network.node("source");
    const auto object = network.node("object");
    const auto slot = network.connect(source, object, "x");
    source->whenUpdated = [&](VRequest& request) {
        touchInput(slot, request.Pool);
        return true;
    };
    const auto pool = makePool();

    EXPECT_TRUE(ask(object, pool));

    EXPECT_EQ(object->age(pool), slot->Parameter->age(pool));
    EXPECT_LT(source->age(pool), object->age(pool));
    EXPECT_FALSE(ask(object, pool));
}

TEST(VObjectRequest, KeepsAnAgeThatTheUpdateItselfHasRaised)
{
    Network network;
    const auto object = network.node("object");
    const auto pool = makePool();
    object->whenUpdated = [&](VRequest&) {
        object->age(pool) = tick();
        return true;
    };

    EXPECT_TRUE(ask(object, pool));

    EXPECT_EQ(object->age(pool), Ageable::GlobalTime) << "an age never falls";
}

TEST(VObjectRequest, UpdatesAFreshlyConnectedObjectThoughAllInputsAreOld)
{
    Network network;
    const auto object = network.node("object");
    const auto pool = makePool();
    const auto old = makeParameter("old");
    ask(object, pool);
    object->updates = 0;
    tick();

    object->addParameter("x", 0, old, false);

    EXPECT_TRUE(ask(object, pool));
    EXPECT_EQ(object->updates, 1);
    EXPECT_GE(object->age(pool), object->ConnectionAge());
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

/// Can be cancelled from anywhere.
class Cancellable final : public VRequest
{
public:
    using VRequest::VRequest;
    bool isCancelled() const override { return cancelled; }
    bool cancelled = false;
};

TEST(VObjectRequest, EndsTheWalkOfACancelledRequestAtTheNextSlot)
{
    Network network;
    const auto first = network.node("first");
    const auto second = network.node("second");
    const auto object = network.node("object");
    network.connect(first, object, "1");
    network.connect(second, object, "2");
    Cancellable request(makePool(), false);
    first->whenUpdated = [&](VRequest&) { return request.cancelled = true; };

    EXPECT_FALSE(object->init_request(request, 1.0)) << "though the first input demands an update";

    EXPECT_EQ(network.takeLog(), (Names{"first"}));
    EXPECT_FALSE(object->Current) << "the object is free again";
}

TEST(VObjectRequest, DoesNotUpdateIfItIsCancelledAtTheLastInput)
{
    Network network;
    const auto source = network.node("source");
    const auto object = network.node("object");
    network.connect(source, object, "x");
    Cancellable request(makePool(), false);
    source->whenUpdated = [&](VRequest&) { return request.cancelled = true; };

    EXPECT_FALSE(object->init_request(request, 1.0));

    EXPECT_EQ(network.takeLog(), (Names{"source"}));
    EXPECT_FALSE(object->Current);
}

/// Notes the inputs that it is asked about.
class Choosy final : public Node
{
public:
    using Node::Node;
    bool ignoreInput(const RefPtr<VSlot>& slot) const override
    {
        asked.push_back(slot->Name);
        return true;
    }
    mutable Names asked;
};

TEST(VObjectRequest, MayIgnoreOnlyInputsOfTheClassesThatItKnows)
{
    Network network;
    const auto source = network.node("source");
    const auto object = network.adopt(new Choosy("object"));
    network.connect(source, object, "known");
    network.connect(source, object, "other")->InputClass = 77;
    object->addParameter("empty", 0, makeParameter("e"), false)->Parameter = {};

    ask(object, makePool());

    EXPECT_EQ(object->asked, (Names{"known"}));
    EXPECT_EQ(network.takeLog(), (Names{"object"}));
}

TEST(VObjectRequest, IgnoresInputsOfOtherClasses)
{
    Network network;
    const auto source = network.node("source");
    const auto object = network.node("object");
    const auto slot = network.connect(source, object, "x");
    const auto pool = makePool();
    ask(object, pool);
    network.takeLog();
    slot->InputClass = 77;
    touchInput(slot);

    EXPECT_FALSE(ask(object, pool));
    object->classes.insert(77);
    EXPECT_TRUE(ask(object, pool));
}

TEST(VObjectRequest, IgnoresInputsByTheirNames)
{
    Network network;
    const auto source = network.node("source");
    const auto object = network.node("object");
    network.connect(source, object, "qZelm::x");
    network.connect(source, object, "qZelm:x");

    ask(object, makePool());

    EXPECT_EQ(network.takeLog(), (Names{"source", "object"}));
    source->Current = WeakPtr<VRequest::ID>();
    EXPECT_EQ(source->updates, 1);
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

TEST(VObjectRequest, WalksASharedSourceTwiceAndUpdatesItOnce)
{
    Network network;
    const auto source = network.node("source");
    const auto left = network.node("left");
    const auto right = network.node("right");
    const auto sink = network.node("sink");
    network.connect(source, left, "l");
    network.connect(source, right, "r");
    network.connect(left, sink, "1");
    network.connect(right, sink, "2");
    const auto pool = makePool();
    VRequest request(pool, false);

    EXPECT_TRUE(sink->init_request(request, 1.0));

    EXPECT_EQ(network.takeLog(), (Names{"source", "left", "right", "sink"}));
    EXPECT_EQ(request.Id->levels().at(source->ID).Count, 2);
    EXPECT_FALSE(ask(sink, pool));
}

/// Notes who asks it, and what it answers.
class Recording final : public Node
{
public:
    using Node::Node;
    bool request(VRequest& request, double precision, const WeakVObjectPtr& caller,
                 const WeakVObjectPtr& origin) override
    {
        callers.push_back(caller);
        origins.push_back(origin);
        answers.push_back(Node::request(request, precision, caller, origin));
        return answers.back();
    }
    std::vector<WeakVObjectPtr> callers;
    std::vector<WeakVObjectPtr> origins;
    std::vector<bool> answers;
};

TEST(VObjectRequest, AnswersFalseOnTheSecondPathToAnObject)
{
    Network network;
    const auto source = network.adopt(new Recording("source"));
    const auto sink = network.adopt(new Recording("sink"));
    const auto middle = network.node("middle");
    network.connect(source, middle, "x");
    network.connect(middle, sink, "1");
    network.connect(source, sink, "2");

    EXPECT_TRUE(ask(sink, makePool()));

    EXPECT_EQ(source->answers, (std::vector<bool>{true, false}));
    EXPECT_EQ(source->callers, (std::vector<WeakVObjectPtr>{middle, sink}));
    EXPECT_EQ(source->origins, (std::vector<WeakVObjectPtr>{sink, sink}));
    EXPECT_EQ(sink->callers, (std::vector<WeakVObjectPtr>{sink}));
    EXPECT_EQ(sink->origins, (std::vector<WeakVObjectPtr>{sink}));
}

TEST(VObjectRequest, RecordsDepthsOfAllButTheObjectWhereItStarts)
{
    Network network;
    const auto a = network.node("a");
    const auto b = network.node("b");
    const auto c = network.node("c");
    network.connect(a, b, "x");
    network.connect(b, c, "x");
    network.connect(a, c, "y");
    VRequest request(makePool(), false);

    c->init_request(request, 1.0);

    const auto& levels = request.Id->levels();
    EXPECT_EQ(levels.count(c->ID), 0U);
    EXPECT_EQ(levels.at(b->ID).MinLevel, 1);
    EXPECT_EQ(levels.at(a->ID).MinLevel, 1);
    EXPECT_EQ(levels.at(a->ID).MaxLevel, 2);
    EXPECT_EQ(levels.at(a->ID).MinCaller, c->ID);
    EXPECT_EQ(levels.at(a->ID).MaxCaller, b->ID);
}

TEST(VObjectRequest, HandsItsDepthDown)
{
    Network network;
    const auto a = network.node("a");
    const auto b = network.node("b");
    network.connect(a, b, "x");

    ask(b, makePool());

    EXPECT_EQ(b->Executor.Level, 0);
    EXPECT_EQ(a->Executor.Level, 1);
    EXPECT_EQ(a->Executor.Max, b->Executor.Max);
    EXPECT_EQ(b->Executor.Max->MaxLevel, 1);
}

TEST(VObjectRequest, NotesTheNewestConnectionThatItMeets)
{
    Network network;
    const auto a = network.node("a");
    const auto b = network.node("b");
    network.connect(a, b, "x");
    a->touchInputSetAge();
    VRequest request(makePool(), false);

    b->init_request(request, 1.0);

    EXPECT_EQ(request.NewestConnection, a->ConnectionAge());
    EXPECT_EQ(request.NewestConnectionObject, a->ID);
}

TEST(VObjectRequest, LeavesWhatIsConnectedMeanwhileToTheNextRequest)
{
    Network network;
    const auto source = network.node("source");
    const auto object = network.node("object");
    network.connect(source, object, "x");
    const auto pool = makePool();
    ask(object, pool);
    network.takeLog();
    source->touchInputSetAge();
    source->whenUpdated = [&](VRequest&) {
        object->touchInputSetAge();
        return false;
    };

    EXPECT_FALSE(ask(object, pool));
    source->whenUpdated = nullptr;
    EXPECT_TRUE(ask(object, pool));
}

TEST(VObjectRequest, ComparesInputsWithThePresentAgeOfTheObject)
{
    Network network;
    const auto source = network.node("source");
    const auto object = network.node("object");
    network.connect(source, object, "1");
    const auto pure = object->input("2");
    const auto pool = makePool();
    ask(object, pool);
    touchInput(pure, pool);
    source->touchInputSetAge();
    source->whenUpdated = [&](VRequest&) {
        object->age(pool) = tick();
        return false;
    };

    EXPECT_FALSE(ask(object, pool)) << "the second input is not newer any more";
    EXPECT_EQ(object->updates, 1);
}

TEST(VObjectRequest, JudgesItsConnectionsByItsAgeOfBeforeTheWalk)
{
    Network network;
    const auto source = network.node("source");
    const auto object = network.node("object");
    network.connect(source, object, "x");
    const auto pool = makePool();
    ask(object, pool);
    source->touchInputSetAge();
    object->touchInputSetAge();
    source->whenUpdated = [&](VRequest&) {
        object->age(pool) = tick();
        return false;
    };

    EXPECT_TRUE(ask(object, pool)) << "though it is younger than its connections by now";
    EXPECT_EQ(object->updates, 2);
}

TEST(VObjectRequest, UpdatesForAStateThatWasTouchedBeforeTheObjectRan)
{
    Network network;
    const auto object = network.node("object");
    const auto slot = object->input("x");
    const auto pool = makePool();
    const auto state = object->myState(pool);
    ask(object, pool);
    EXPECT_FALSE(ask(object, pool)) << "a state of age 0 does not count";

    state->touch();
    touchInput(slot);
    EXPECT_TRUE(ask(object, pool));
    EXPECT_TRUE(ask(object, pool)) << "old at every request";
    EXPECT_TRUE(ask(object, pool));
    state->touch();
    EXPECT_FALSE(ask(object, pool));
}

class Demanding final : public Node
{
public:
    using Node::Node;
    bool must_update(const VRequest&, double precision) const override
    {
        ++asked;
        lastAskedPrecision = precision;
        return demands;
    }
    bool demands = true;
    mutable int asked = 0;
    mutable double lastAskedPrecision = 0;
};

TEST(VObjectRequest, AsksForAnUpdateOnlyWhereNoAgeDemandsOne)
{
    Network network;
    const auto object = network.adopt(new Demanding("object"));
    const auto pool = makePool();
    ask(object, pool);
    EXPECT_EQ(object->asked, 0) << "its connections demanded one";

    EXPECT_TRUE(ask(object, pool, 0.5));
    EXPECT_EQ(object->asked, 1);
    EXPECT_EQ(object->lastAskedPrecision, 0.5);
    object->demands = false;
    EXPECT_FALSE(ask(object, pool));
    EXPECT_EQ(object->updates, 2);
}

std::string order;

bool noteA(VObject*, VRequest&, double)
{
    order += 'f';
    return true;
}

bool failing(VObject*, VRequest&, double)
{
    order += 'x';
    return false;
}

class Unlocked final : public Node
{
public:
    using Node::Node;
    bool unsychronized_update(VRequest&, double) override
    {
        order += 'u';
        return goesOn;
    }
    bool goesOn = true;
};

TEST(VObjectRequest, RunsTheUnlockedPartThenTheFunctionsThenTheUpdate)
{
    Network network;
    const auto object = network.adopt(new Unlocked("object"));
    object->whenUpdated = [](VRequest&) {
        order += 'n';
        return true;
    };
    object->insertUpdateFunction(&noteA);
    object->insertUpdateFunction(&noteA);
    VRequest request({}, false);

    order.clear();
    EXPECT_TRUE(object->perform_update(request, 1.0));
    EXPECT_EQ(order, "ufn");

    order.clear();
    object->insertUpdateFunction(&failing);
    EXPECT_FALSE(object->perform_update(request, 1.0));
    EXPECT_EQ(order.find('n'), std::string::npos);

    order.clear();
    object->goesOn = false;
    EXPECT_FALSE(object->perform_update(request, 1.0));
    EXPECT_EQ(order, "u");
}

/// Notes in its three parts whether another thread can take its lock.
class Locked final : public Node
{
public:
    using Node::Node;
    bool unsychronized_update(VRequest&, double) override
    {
        std::thread([&] { // would wait for ever
            lock();
            unlock();
        })
            .join();
        return true;
    }
    bool update(VRequest&, double) override
    {
        noteAttempt();
        return true;
    }
    static bool tryInFunction(VObject* object, VRequest&, double)
    {
        static_cast<Locked*>(object)->noteAttempt();
        return true;
    }

    std::vector<std::thread> attempts; // to be joined when the lock is free again
    std::atomic<int> succeeded = 0;
    int succeededInside = 0;

private:
    void noteAttempt()
    {
        std::atomic<bool> hasBegun = false;
        attempts.emplace_back([&] {
            hasBegun = true;
            lock();
            ++succeeded;
            unlock();
        });
        while (!hasBegun) std::this_thread::yield();
        for (int i = 0; i < 100; ++i) std::this_thread::yield();
        succeededInside += succeeded;
    }
};

TEST(VObjectRequest, HoldsTheMutexForTheFunctionsAndTheUpdateAlone)
{
    Network network;
    const auto object = network.adopt(new Locked("object"));
    object->insertUpdateFunction(&Locked::tryInFunction);
    VRequest request({}, false);

    EXPECT_TRUE(object->perform_update(request, 1.0));
    for (std::thread& attempt : object->attempts) attempt.join();

    EXPECT_EQ(object->succeededInside, 0);
    EXPECT_EQ(object->succeeded, 2);
}

TEST(VObjectRequest, CountsRequestsAndUpdatesInProgress)
{
    Network network;
    const auto object = network.node("object");
    int requests = 0;
    int updates = 0;
    object->whenUpdated = [&](VRequest&) {
        requests = object->RequestCounter.value();
        updates = object->UpdateCounter.value();
        return true;
    };

    ask(object, makePool());

    EXPECT_EQ(requests, 1);
    EXPECT_EQ(updates, 1);
    EXPECT_EQ(object->RequestCounter.value(), 0);
    EXPECT_EQ(object->UpdateCounter.value(), 0);
}

struct StatusCase
{
    unsigned status;
    bool answer;
};

class ExecutionStatus : public testing::TestWithParam<StatusCase>
{
};

TEST_P(ExecutionStatus, EndsAnUpdateWithItsAnswerAndNoNewAge)
{
    Network network;
    const auto object = network.node("object");
    const auto pool = makePool();
    const Ageable before = object->age(pool);
    object->whenUpdated = [](VRequest&) -> bool {
        throw VObject::ExecutionStatus(GetParam().status, "out of paint");
    };
    bool answer = false;

    const std::string text = errorOutputOf([&] { answer = ask(object, pool); });

    EXPECT_EQ(text, "EXCEPTION: object::update(): out of paint\n");
    EXPECT_EQ(answer, GetParam().answer);
    EXPECT_EQ(object->age(pool), before);
    EXPECT_EQ(object->UpdateCounter.value(), 0);
    errorOutputOf([&] { ask(object, pool); });
    EXPECT_EQ(object->updates, 2) << "it is tried again";
}

INSTANTIATE_TEST_SUITE_P(AllGroups, ExecutionStatus,
                         testing::Values(StatusCase{0, true}, StatusCase{3, true},
                                         StatusCase{4, true}, StatusCase{5, false},
                                         StatusCase{6, false}, StatusCase{0xFFFFFFFF, false}));

TEST(VObjectRequest, SaysNotUpdatedAfterAnUnknownStatusAtHighVerbosity)
{
    Network network;
    const auto object = network.node("object");
    unsigned status = 5;
    object->whenUpdated = [&](VRequest&) -> bool { throw VObject::ExecutionStatus(status, "x"); };
    const auto lastLine = [&] {
        VObject::VERBOSE_REQUEST = 11;
        std::string text;
        errorOutputOf([&] { text = outputOf([&] { ask(object, makePool()); }); });
        VObject::VERBOSE_REQUEST = 0;
        text.pop_back();
        return text.substr(text.rfind('\n') + 1);
    };

    EXPECT_NE(lastLine(), "Object: object NOT updated.");
    status = 6;
    EXPECT_EQ(lastLine(), "Object: object NOT updated.");
}

class Picture final : public Tolmen::Cacheable
{
};

TEST(VObjectRequest, NamesTheObjectThatRanOutOfMemory)
{
    Network network;
    const auto source = network.node("source");
    const auto object = network.node("object");
    network.connect(source, object, "x");
    const RefPtr<Tolmen::Cacheable> picture(new Picture);
    source->whenUpdated = [&](VRequest&) -> bool {
        throw Tolmen::Cache::OutOfMemory(picture, "too large");
    };
    try
    {
        ask(object, makePool());
        FAIL() << "it passes to whoever started the evaluation";
    }
    catch (const VObjectIsOutOfMemory& failure)
    {
        EXPECT_EQ(failure.Object, source);
        EXPECT_EQ(failure.object, picture);
        EXPECT_STREQ(failure.what(), "too large");
    }
    EXPECT_EQ(source->UpdateCounter.value(), 0);
    EXPECT_EQ(object->RequestCounter.value(), 0);
}

TEST(VObjectRequest, NamesTheLastObjectWhoseUpdateThatFailurePassed)
{
    Network network;
    const auto source = network.node("source");
    const auto object = network.node("object");
    source->whenUpdated = [](VRequest&) -> bool { throw Tolmen::Cache::OutOfMemory(); };
    object->whenUpdated = [&](VRequest& request) { return source->init_request(request, 1.0); };

    try
    {
        ask(object, makePool());
        FAIL() << "it passes to whoever started the evaluation";
    }
    catch (const VObjectIsOutOfMemory& failure)
    {
        EXPECT_EQ(failure.Object, object);
    }
}

TEST(VObjectRequest, LeavesAnObjectOccupiedThatAnExceptionPassesOnItsWalk)
{
    Network network;
    const auto source = network.node("source");
    const auto object = network.node("object");
    network.connect(source, object, "x");
    source->whenUpdated = [](VRequest&) -> bool { throw std::runtime_error("stop"); };
    EXPECT_THROW(ask(object, makePool()), std::runtime_error);
    source->whenUpdated = nullptr;

    EXPECT_TRUE(object->Current);
    EXPECT_FALSE(source->Current) << "the source was on its way back";
    const std::string text = outputOf([&] { EXPECT_TRUE(ask(object, makePool())); });
    EXPECT_NE(text.find("YIKES!"), std::string::npos);
    EXPECT_EQ(object->updates, 0);

    VRequest any({}, false);
    object->removeRequest(any);
    EXPECT_TRUE(ask(object, makePool()));
    EXPECT_EQ(object->updates, 1);
}

TEST(VObjectRequest, ReleasesTheMutexWhenAnUpdateThrows)
{
    Network network;
    const auto object = network.node("object");
    object->whenUpdated = [](VRequest&) -> bool { throw std::runtime_error("stop"); };
    EXPECT_THROW(ask(object, makePool()), std::runtime_error);

    bool isFree = false;
    std::thread([&] {
        object->lock(); // would wait for ever
        isFree = true;
        object->unlock();
    }).join();

    EXPECT_TRUE(isFree);
}

TEST(VObjectRequest, SurvivesTheEndOfASourceInItsOwnUpdate)
{
    Network network;
    const auto object = network.node("object");
    const auto slot = object->input("x");
    {
        auto* const source = new Node("ends itself", &network.log);
        slot->attachSource(source->output("x"));
        source->whenUpdated = [source](VRequest&) {
            source->VManagedObject::remove();
            return true;
        };
    }

    EXPECT_TRUE(ask(object, makePool()));

    EXPECT_EQ(network.takeLog(), (Names{"ends itself", "object"}));
    EXPECT_FALSE(slot->Parameter->source);
    EXPECT_TRUE(slot->Parameter) << "the input keeps the parameter";
}

TEST(VObjectRequest, SurvivesAnUpdateThatRewiresTheAskingObject)
{
    Network network;
    const auto first = network.node("first");
    const auto other = network.node("other");
    const auto object = network.node("object");
    const auto slot = network.connect(first, object, "x");
    const auto replacement = other->output("r");
    first->whenUpdated = [&](VRequest&) {
        slot->attachSource(replacement);
        return true;
    };
    const auto pool = makePool();

    EXPECT_TRUE(ask(object, pool));
    EXPECT_EQ(network.takeLog(), (Names{"first", "object"}));
    EXPECT_TRUE(ask(object, pool)) << "the new connection counts from the next request on";
    EXPECT_EQ(network.takeLog(), (Names{"other", "object"}));
}

TEST(VObjectRequest, RunsWithoutAPoolOnTheObjectsOwnAge)
{
    Network network;
    const auto object = network.node("object");
    const auto slot = object->input("x");

    EXPECT_TRUE(ask(object)) << "the input came after the object";
    EXPECT_FALSE(ask(object));
    touchInput(slot);
    EXPECT_TRUE(ask(object));
    EXPECT_EQ(object->age({}), Ageable::GlobalTime);
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

TEST(VObjectRequest, LastsUntilItIsAnsweredThoughTheUpdateRemovesTheObject)
{
    auto* const object = new Node("leaving in its update");
    const WeakPtr<Node> watch(object);
    object->whenUpdated = [watch](VRequest&) {
        watch->VManagedObject::remove();
        return true;
    };
    object->input("x");
    VRequest request(makePool(), false);
    EXPECT_TRUE(object->init_request(request, 1.0));
    EXPECT_FALSE(watch) << "the registry alone had it";
}

} // namespace
} // namespace Quorl
