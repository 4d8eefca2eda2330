#include <quorl/objects/VObject.h>
#include <tests/support/Node.h>

#include <gtest/gtest.h>

/// By which ages a request decides, of inputs, connections and states, and how old everything is
/// behind it.
namespace Quorl
{
namespace
{

using QuorlTest::ask;
using QuorlTest::makeParameter;
using QuorlTest::makePool;
using QuorlTest::Network;
using QuorlTest::Node;
using QuorlTest::tick;
using QuorlTest::touchInput;

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

/// The next request has the source run, which makes the object that asks it as young as the clock.
void makeYoungerInItsWalk(Node& object, Node& source, const RefPtr<ValuePool>& pool)
{
    source.touchInputSetAge();
    source.whenUpdated = [&object, pool](VRequest&) {
        object.age(pool) = tick();
        return false;
    };
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
    makeYoungerInItsWalk(*object, *source, pool);

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
    object->touchInputSetAge();
    makeYoungerInItsWalk(*object, *source, pool);

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

TEST(VObjectRequest, SeesAStateThatIsReplacedInTheWalkByWhomItWasLentTo)
{
    Network network;
    const auto kept = network.node("kept");
    const auto first = network.node("first");
    const auto writer = network.node("writer");
    const auto root = network.node("root");
    const auto pool = makePool();
    kept->input("in");
    const auto inputOfFirst = first->input("in");
    const auto inputOfWriter = writer->input("in");
    network.connect(kept, root, "1");
    network.connect(first, root, "2");
    network.connect(kept, root, "3"); // once more, since code has run: kept under a watch
    network.connect(writer, root, "4");
    network.connect(kept, root, "5");
    ask(root, pool);
    network.takeLog();

    RefPtr<VStateCreatorBase::State>& lent = kept->getState(pool);
    const RefPtr<VStateCreatorBase::State> modifiedOnce(new VStateCreatorBase::State);
    static_cast<Ageable&>(*modifiedOnce) = Ageable(1);
    writer->whenUpdated = [&](VRequest&) {
        lent = modifiedOnce;
        return true;
    };
    touchInput(inputOfFirst, pool);
    touchInput(inputOfWriter, pool);
    ask(root, pool);

    EXPECT_EQ(network.takeLog(), (std::vector<std::string>{"first", "writer", "kept", "root"}));
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

} // namespace
} // namespace Quorl
