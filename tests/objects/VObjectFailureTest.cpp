#include <quorl/foundation/Cache.h>
#include <quorl/objects/VObject.h>
#include <quorl/objects/VObjectIsOutOfMemory.h>
#include <tests/support/CapturedOutput.h>
#include <tests/support/Node.h>

#include <gtest/gtest.h>

#include <stdexcept>
#include <thread>

/// Updates that end by a status or an exception, and objects that end or change in one.
namespace Quorl
{
namespace
{

using QuorlTest::ask;
using QuorlTest::errorOutputOf;
using QuorlTest::makePool;
using QuorlTest::Network;
using QuorlTest::Node;
using QuorlTest::outputOf;

using Names = std::vector<std::string>;

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
