#include <quorl/objects/VObject.h>
#include <tests/support/Node.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <functional>
#include <latch>
#include <string>
#include <thread>
#include <vector>

/// How deep a request finds each object, and what it answers on a second path to one.
namespace Quorl
{
namespace
{

using QuorlTest::ask;
using QuorlTest::makePool;
using QuorlTest::Network;
using QuorlTest::Node;

using Names = std::vector<std::string>;

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

/// An object that is let out while the walk is inside of it is walked once more on each way round,
/// which leaves it at another depth.
TEST(VObjectRequest, CountsDepthsFromWhereAnObjectIsByThen)
{
    Network network;
    const auto source = network.node("source");
    const auto object = network.node("object");
    const auto near = network.node("near");
    const auto last = network.node("last");
    network.connect(source, object, "1");
    network.connect(near, object, "2");
    network.connect(near, object, "3");
    network.connect(near, object, "4");
    network.connect(last, object, "5");
    network.connect(object, near, "x");
    const auto pool = makePool();
    ask(object, pool);
    source->touchInputSetAge();
    source->whenUpdated = [&](VRequest& request) {
        object->removeRequest(request);
        return true;
    };
    VRequest request(pool, false);

    object->init_request(request, 1.0);

    // Each round begins at the depth at which the one before ended.
    EXPECT_EQ(object->Executor.Level, 6);
    EXPECT_EQ(last->Executor.Level, 7);
    EXPECT_EQ(request.Id->levels().at(last->ID).MaxLevel, 7);
}

/// Each takes from the two before it, so that depths become others many times.
RefPtr<Node> endOfLadder(Network& network)
{
    constexpr std::size_t kObjects = 40;
    std::vector<RefPtr<Node>> nodes;
    while (nodes.size() < kObjects)
    {
        const RefPtr<Node> node = network.node("object " + std::to_string(nodes.size()));
        for (std::size_t back = 1; back <= std::min<std::size_t>(nodes.size(), 2); ++back)
            network.connect(nodes[nodes.size() - back], node, std::to_string(back));
        nodes.push_back(node);
    }
    return nodes.back();
}

TEST(RequestExecutorThreads, ReadHowOftenDepthsHaveChangedInAnEvaluationThatHasEnded)
{
    constexpr int kRounds = 50;
    constexpr int kReaders = 4;
    for (int round = 0; round < kRounds; ++round)
    {
        Network network;
        const RefPtr<Node> end = endOfLadder(network);
        for (int evaluation = 0; evaluation < 3; ++evaluation) ask(end, makePool());
        const auto& changes = end->Executor.Max->Changes;
        std::vector<std::int32_t> answers(kReaders);
        std::latch begin(kReaders);
        {
            std::vector<std::jthread> readers;
            for (std::int32_t& answer : answers)
                readers.emplace_back([&] {
                    begin.arrive_and_wait();
                    answer = changes;
                });
        }

        EXPECT_EQ(answers, std::vector<std::int32_t>(kReaders, changes));
    }
}

/// A chain at whose end requests ask for three of its objects, with other walks each time: of the
/// sides one more is changed ahead of each request.
std::int32_t changesBehindCoursesOf(const std::function<void(Node& end)>& afterEachRequest)
{
    constexpr int kChain = 10;
    constexpr int kCourses = 12;
    Network network;
    const RefPtr<ValuePool> pool = makePool();
    std::vector<RefPtr<Node>> chain{network.node("0")};
    for (int at = 1; at < kChain; ++at)
    {
        chain.push_back(network.node(std::to_string(at)));
        network.connect(chain[at - 1], chain[at], "x");
    }
    const auto end = network.node("end");
    std::vector<RefPtr<VSlot>> sides;
    for (int at = 0; at < kCourses; ++at)
    {
        const auto side = network.node("side" + std::to_string(at));
        sides.push_back(side->input("own"));
        network.connect(side, end, "0" + std::to_string(at));
    }
    for (const int at : {9, 8, 4}) network.connect(chain[at], end, "2" + std::to_string(at));
    ask(end, pool);
    for (int course = 0; course < kCourses; ++course)
    {
        for (int at = 0; at <= course; ++at) QuorlTest::touchInput(sides[at], pool);
        ask(end, pool);
        afterEachRequest(*end);
    }
    return end->Executor.Max->Changes;
}

TEST(VObjectRequest, CountsHowOftenDepthsChangeWheneverThatIsRead)
{
    std::int32_t last = 0;
    const std::int32_t readEachTime = changesBehindCoursesOf([&](Node& end) {
        EXPECT_GT(end.Executor.Max->Changes, last);
        last = end.Executor.Max->Changes;
    });

    EXPECT_EQ(changesBehindCoursesOf([](Node&) {}), readEachTime);
}

} // namespace
} // namespace Quorl
