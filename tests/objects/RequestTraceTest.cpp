#include <quorl/objects/VObject.h>
#include <tests/support/CapturedOutput.h>
#include <tests/support/Node.h>

#include <gtest/gtest.h>

#include <string>

namespace Quorl
{
namespace
{

using QuorlTest::ask;
using QuorlTest::makePool;
using QuorlTest::Network;
using QuorlTest::outputOf;

/// What a request says at a verbosity.
template <class Act>
std::string spoken(int verbosity, Act&& act)
{
    VObject::VERBOSE_REQUEST = verbosity;
    const std::string text = outputOf(act);
    VObject::VERBOSE_REQUEST = 0;
    return text;
}

std::string number(const Ageable& age)
{
    return std::to_string(age.stamp());
}

std::string number(const VRequest& request)
{
    return std::to_string(request.Id->Tolmen::ReferenceBase<VRequest::ID>::ID);
}

/// A source and a sink, with all ages known.
struct Pair
{
    Network network;
    RefPtr<QuorlTest::Node> source = network.node("source");
    RefPtr<QuorlTest::Node> sink = network.node("sink");
    RefPtr<VSlot> slot = network.connect(source, sink, "x");
    RefPtr<ValuePool> pool = makePool();
};

TEST(RequestTrace, SaysNothingUnlessAsked)
{
    Pair pair;

    EXPECT_EQ(spoken(0, [&] { ask(pair.sink, pair.pool); }), "");
}

TEST(RequestTrace, TellsRequestsAndUpdatesAtVerbosityOne)
{
    Pair pair;
    VRequest request(pair.pool, false);
    const std::string connection = number(pair.sink->ConnectionAge());
    const std::string sourceConnection = number(pair.source->ConnectionAge());

    const std::string text = spoken(1, [&] { pair.sink->init_request(request, 0.5); });

    const std::string id = number(request);
    EXPECT_EQ(
        text,
        ">>> \tVObject: sink::request(Request " + id +
            ", prec=0.5)\tt=-1, (connected at t=" + connection + ", inputs=1, outputs=0)\n" +
            " >>> \tVObject: source::request(Request " + id +
            ", prec=1)\tt=-1, (connected at t=" + sourceConnection + ", inputs=0, outputs=1)\n" +
            " **OBJECT UPDATE[QuorlTest::Node]: Call source->update() newest input is " +
            sourceConnection + ", current age is -1  ... because an action happened: " +
            "Connections/Parameters have changed\n" +
            "Object: source update called successfully for newest input t=" + sourceConnection +
            ", it has aged to t=" + sourceConnection + " now.\n" +
            "      INFO: source::update() changed from t=-1 to t=" + sourceConnection + " now.\n" +
            "**OBJECT UPDATE[QuorlTest::Node]: Call sink->update() newest input is " + connection +
            ", current age is -1 ... because an action happened: " +
            "Connections/Parameters have changed\n" +
            "Object: sink update called successfully for newest input t=" + connection +
            ", it has aged to t=" + connection + " now.\n" +
            "      INFO: sink::update() changed from t=-1 to t=" + connection + " now.\n");
}

TEST(RequestTrace, TellsEachInputAtTheHighestVerbosity)
{
    Pair pair;
    ask(pair.sink, pair.pool);
    const std::string sinkAge = number(pair.sink->age(pair.pool));
    const std::string sourceAge = number(pair.source->age(pair.pool));
    pair.slot->Parameter->touchValue(pair.pool);
    const std::string now = number(Ageable::GlobalTime);
    VRequest request(pair.pool, false);

    const std::string text = spoken(21, [&] { pair.sink->init_request(request, 1.0); });

    const std::string id = number(request);
    const std::string connection = number(pair.sink->ConnectionAge());
    const std::string sourceConnection = number(pair.source->ConnectionAge());
    EXPECT_EQ(
        text,
        ">>> \tVObject: sink::request(Request " + id + ", prec=1)\tt=" + sinkAge +
            ", (connected at t=" + connection + ", inputs=1, outputs=0)\n" +
            " ==> sink->x [object input]\n" + "   sink(t=" + sinkAge +
            "): ACTION: AHA! Input [x(t=" + now + ")] is newer!\n" + "   sink(t=" + sinkAge +
            "): [x] has t=" + now + " (newest so far is " + now + ")\n" + "    \t\t      sink(t=" +
            sinkAge + ") input [x(t=" + now + ")] as owned by object source(t=" + sourceAge +
            ")\t[member ''] - REQUIRES UPDATE\n" + " >>> \tVObject: source::request(Request " + id +
            ", prec=1)\tt=" + sourceAge + ", (connected at t=" + sourceConnection +
            ", inputs=0, outputs=1)\n" + "       \tObject: NO action indicated for source\n" +
            "Object: source NOT updated.\n" + " sink(t=" + sinkAge +
            "): Parameter 'source(t=" + sourceAge + ")' remained constant, so no update .\n" +
            "      \tObject: ACTION indicated for sink\n" +
            "**OBJECT UPDATE[QuorlTest::Node]: Call sink->update() newest input is " + now +
            ", current age is " + sinkAge + " ... because an action happened: Input x is newer\n" +
            "[0]  sink->update() T=" + sinkAge + "\n" +
            "Object: sink update called successfully for newest input t=" + now +
            ", it has aged to t=" + now + " now.\n" +
            "      INFO: sink::update() changed from t=" + sinkAge + " to t=" + now + " now.\n");
}

TEST(RequestTrace, TellsOfAModifiedSourceAboveFive)
{
    Pair pair;
    const RefPtr<VSlot> upstream = pair.source->input("y");
    ask(pair.sink, pair.pool);
    const std::string sinkAge = number(pair.sink->age(pair.pool));
    const std::string parameter = number(pair.slot->Parameter->age(pair.pool));
    upstream->Parameter->touchValue(pair.pool);
    const std::string now = number(Ageable::GlobalTime);

    const std::string text = spoken(6, [&] { ask(pair.sink, pair.pool); });

    EXPECT_NE(text.find(" sink: Input ACTION Object 'source' was modified to " + parameter +
                        " (newest input " + sinkAge + "), object is at " + now + " now\n" +
                        " Input ACTION sink::request(t=" + sinkAge + ") -> input x is t=" + now +
                        ", need to update because object is newer.\n"),
              std::string::npos)
        << text;
    EXPECT_NE(text.find("... because an action happened: Input x is newer\n"), std::string::npos);
}

TEST(RequestTrace, GivesTheLongReasonWhereASourceAnswersTrueButIsNotNewer)
{
    Pair pair;
    ask(pair.sink, pair.pool);
    pair.source->whenUpdated = [](VRequest&) -> bool {
        throw VObject::ExecutionStatus(0, "later");
    };
    pair.source->age(pair.pool) = Ageable(0);
    std::string text;
    QuorlTest::errorOutputOf([&] { text = spoken(1, [&] { ask(pair.sink, pair.pool); }); });

    EXPECT_NE(text.find("... because an action happened: Input Object source->request() returned "
                        "true, it provides input param x\n"),
              std::string::npos)
        << text;
}

TEST(RequestTrace, TellsOfPureInputs)
{
    Network network;
    const auto object = network.node("object");
    const RefPtr<VSlot> slot = object->input("x");
    const auto pool = makePool();
    ask(object, pool);
    const std::string age = number(object->age(pool));
    const std::string quiet = spoken(21, [&] { ask(object, pool); });
    EXPECT_NE(quiet.find(" \tinput has no object associated...      \tObject: NO action indicated "
                         "for object\n"),
              std::string::npos)
        << quiet;

    slot->Parameter->touchValue(pool);
    const std::string now = number(Ageable::GlobalTime);
    const std::string text = spoken(1, [&] { ask(object, pool); });

    EXPECT_NE(text.find("   ACTION: non-object related input [x] is newer than " + age +
                        ", should update object to " + now + "...\n"),
              std::string::npos)
        << text;
    EXPECT_NE(text.find("because an action happened: Pure Input x is newer\n"), std::string::npos);
}

TEST(RequestTrace, TellsOfAnOldStateAndOfAMissingPool)
{
    Network network;
    const auto object = network.node("object");
    object->age({}) = QuorlTest::tick();
    object->myState(WeakPtr<ValuePool>())->touch();
    const std::string stateAge = number(Ageable::GlobalTime);
    object->age({}) = QuorlTest::tick();

    const std::string text = spoken(4, [&] { ask(object); });

    EXPECT_NE(text.find("      \tObject: NO action indicated for object\nObject Local State " +
                        stateAge +
                        " is modified, but old\nobject: VOBJECT REQUEST WITHOUT GHOSTVALUES!\n"),
              std::string::npos)
        << text;
    EXPECT_NE(text.find("Object local state is old, object needs to update\n"), std::string::npos);
}

TEST(RequestTrace, GivesTheLastReasonAStateOverInputsAndConnectionsOverAll)
{
    Network network;
    const auto object = network.node("object");
    const RefPtr<VSlot> slot = object->input("x");
    const auto pool = makePool();
    object->myState(pool)->touch();
    object->age(pool) = QuorlTest::tick();

    slot->Parameter->touchValue(pool);
    const std::string state = spoken(1, [&] { ask(object, pool); });
    slot->Parameter->touchValue(pool);
    object->touchInputSetAge();
    const std::string connections = spoken(1, [&] { ask(object, pool); });

    EXPECT_NE(state.find("because an action happened: Object local state is old, object needs to "
                         "update\n"),
              std::string::npos)
        << state;
    EXPECT_NE(connections.find("because an action happened: Connections/Parameters have changed\n"),
              std::string::npos)
        << connections;
}

TEST(RequestTrace, FindsAnyInputNewerInAContextThatNeverRanTheObject)
{
    Network network;
    const auto object = network.node("object");
    const RefPtr<VSlot> slot = object->input("x");
    const std::string parameter = number(slot->Parameter->age({}));

    const std::string text = spoken(3, [&] { ask(object, makePool()); });

    EXPECT_NE(text.find("   object(t=-1): ACTION: AHA! Input [x(t=" + parameter + ")] is newer!\n"),
              std::string::npos)
        << text;
}

TEST(RequestTrace, TellsThatAnObjectMustUpdate)
{
    struct Demanding final : QuorlTest::Node
    {
        using Node::Node;
        bool must_update(const VRequest&, double) const override { return true; }
    };
    Network network;
    const auto object = network.adopt(new Demanding("object"));
    const auto pool = makePool();
    ask(object, pool);
    const std::string age = number(object->age(pool));
    object->Executor.Level = 3;

    const std::string text = spoken(11, [&] { ask(object, pool); });

    EXPECT_NE(text.find("newest input is " + age + ", current age is " + age +
                        " ...because it must update\n   [3]  object->update() T=" + age +
                        "\nObject: object update called successfully for newest input t=" + age +
                        ", it has aged to t=" + age + " now.\n"),
              std::string::npos)
        << text;
    EXPECT_EQ(text.find("INFO:"), std::string::npos);
}

TEST(RequestTrace, TellsOfAFailedUpdate)
{
    Network network;
    const auto object = network.node("object");
    object->whenUpdated = [](VRequest&) { return false; };
    const std::string connection = number(object->ConnectionAge());

    const std::string text = spoken(1, [&] { ask(object, makePool()); });

    EXPECT_NE(
        text.find("Object: object update FAILED for t=" + connection + ", it has t=-1 now.\n"),
        std::string::npos)
        << text;
}

TEST(RequestTrace, TellsOfARecursionAtTheTop)
{
    Pair pair;
    pair.source->whenUpdated = [&](VRequest& request) {
        return pair.sink->init_request(request, 1.0);
    };

    const std::string text = spoken(1, [&] { ask(pair.sink, pair.pool); });

    EXPECT_NE(text.find("    TOP: VObject[sink]: Recursive request, no action taken here!\n"),
              std::string::npos)
        << text;
}

TEST(RequestTrace, IndentsByWalksUnderWayAlsoAfterAnException)
{
    Pair pair;
    pair.source->whenUpdated = [](VRequest&) -> bool { throw 1; };
    EXPECT_THROW(ask(pair.sink, pair.pool), int);

    pair.source->whenUpdated = nullptr;
    const std::string text = spoken(1, [&] { ask(pair.source, makePool()); });

    EXPECT_EQ(text.substr(0, 4), ">>> ");
}

} // namespace
} // namespace Quorl
