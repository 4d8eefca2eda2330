#include <tests/support/CapturedOutput.h>
#include <tests/support/Node.h>
#include <zelm/why/Explanation.h>
#include <zelm/why/Predictor.h>
#include <zelm/why/Recorder.h>

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

namespace Zelm
{
namespace
{

using Quorl::VRequest;
using QuorlTest::Node;

/// A chain of three objects, "first" upstream, of which each has an input "value" of its own.
class Why : public testing::Test
{
protected:
    Why() : context(QuorlTest::makePool())
    {
        for (const RefPtr<Node>& node : {first, second, third}) node->input("value");
        toSecond = network.connect(first, second, "feed");
        toThird = network.connect(second, third, "feed");
        for (const RefPtr<Node>& node : {first, second})
            node->whenUpdated = [raw = &*node](VRequest&) {
                raw->getOutput("feed")->Parameter->touchValue({});
                return true;
            };
        QuorlTest::ask(third, context);
    }

    void touch(const RefPtr<Node>& node) { node->getParameter("value")->touchValue({}); }

    /// What a request of `third` did at an object, as it was recorded.
    Explanation recorded(const RefPtr<Node>& node, const std::function<bool()>& wish = {})
    {
        return explained(Recorder(context, wish).evaluate(third, 1.0), third, node);
    }

    static std::string chainOf(const Explanation& explanation)
    {
        std::string text;
        for (const Explanation::Link& link : explanation.chain)
            text += link.object + "." + link.input + ":" +
                    std::to_string(static_cast<int>(link.row)) + " ";
        return text + "| " + explanation.start;
    }

    static std::string fatesOf(const Explanation& explanation)
    {
        std::string text;
        for (const InputStory& input : explanation.story->inputs)
            text += (text.empty() ? "" : "; ") + input.name + ": " + wordsOf(input.fate);
        return text;
    }

    QuorlTest::Network network;
    const RefPtr<Quorl::ValuePool> context;
    const RefPtr<Node> first = network.node("first");
    const RefPtr<Node> second = network.node("second");
    const RefPtr<Node> third = network.node("third");
    RefPtr<Quorl::VSlot> toSecond;
    RefPtr<Quorl::VSlot> toThird;
};

TEST_F(Why, FollowsAChangeToItsStart)
{
    touch(first);
    const Stamp changed = first->getParameter("value")->age(context).stamp();
    const Stamp before = first->age(context).stamp();

    const Explanation told = recorded(third);

    EXPECT_EQ(told.verdict(), "runs");
    EXPECT_EQ(chainOf(told), "third.feed:3 second.feed:3 first.value:1 | first.value was changed");
    EXPECT_EQ(told.chain.back().age, changed);
    EXPECT_EQ(told.chain.back().ownAge, before);
}

TEST_F(Why, TellsThatNothingIsNewer)
{
    const Explanation told = recorded(third);

    EXPECT_EQ(told.verdict(), "does not run: nothing is newer");
    EXPECT_EQ(chainOf(told), "| ");
    ASSERT_EQ(told.story->inputs.size(), 2U);
    const InputStory& feed = told.story->inputs.front();
    EXPECT_EQ(feed.age, toThird->Parameter->age(context).stamp());
    EXPECT_EQ(feed.sourceAge, second->age(context).stamp());
    EXPECT_EQ(feed.ownAge, third->age(context).stamp());
}

TEST_F(Why, TellsOfObjectsThatNeverRan)
{
    const auto other = QuorlTest::makePool();

    const Explanation told = explained(Recorder(other).evaluate(third, 1.0), third, second);

    EXPECT_EQ(chainOf(told), "second.feed:1 | second has never run in this context");
    EXPECT_EQ(told.story->age, kNever);
}

TEST_F(Why, TellsOfConnections)
{
    second->touchInputSetAge();

    EXPECT_EQ(chainOf(recorded(third)), "third.feed:3 second.:6 | an input of second was attached");
}

TEST_F(Why, TellsOfStatesThatAreLeftBehind)
{
    second->myState(context)->touch();
    touch(second);
    QuorlTest::ask(third, context);

    EXPECT_EQ(chainOf(recorded(second)), "second.:5 | the state of second was left behind");
}

TEST_F(Why, TellsOfSourcesThatRanInAnEarlierRequest)
{
    touch(first);
    first->whenUpdated = {};
    QuorlTest::ask(first, context);

    EXPECT_EQ(chainOf(recorded(second)), "second.feed:4 | first ran in an earlier request");
}

TEST_F(Why, TellsOfObjectsThatDemandToRun)
{
    struct Demanding final : Node
    {
        using Node::Node;
        bool must_update(const VRequest&, double) const override { return true; }
    };
    const RefPtr<Node> fourth = network.adopt(new Demanding("fourth"));
    network.connect(fourth, third, "other");
    QuorlTest::ask(third, context);

    const Account ahead = foreseen(third, context, 1.0);
    EXPECT_EQ(chainOf(recorded(third)), "third.other:3 fourth.:7 | fourth demands to run");
    EXPECT_EQ(chainOf(explained(ahead, third, third)),
              "third.other:3 fourth.:7 | fourth demands to run");
}

TEST_F(Why, TellsOfInputsThatDoNotTakePart)
{
    toThird->InputClass = 7;
    third->addParameter("qZelm::hint", 0, QuorlTest::makeParameter("hint"), false);
    third->input("zig")->assignParameter({}, "");
    QuorlTest::ask(third, context);
    touch(first);

    const Explanation told = recorded(third);

    EXPECT_EQ(fatesOf(told), "feed: ignored: its input class; qZelm::hint: ignored: its name; "
                             "value: ; zig: nothing is attached");
    const Explanation unreached = recorded(first);
    EXPECT_EQ(unreached.verdict(), "is not reached");
    ASSERT_EQ(unreached.barriers.size(), 1U);
    EXPECT_EQ(unreached.barriers[0].object + "." + unreached.barriers[0].input, "third.feed");
    EXPECT_EQ(unreached.barriers[0].fate, InputStory::Fate::IgnoredClass);
}

TEST_F(Why, TellsOfSourcesThatAreNotReady)
{
    touch(first);
    second->disableRequestProcessing();

    QuorlTest::outputOf([&] {
        const Explanation told = recorded(second);
        EXPECT_EQ(told.verdict(), "is not reached");
        ASSERT_EQ(told.barriers.size(), 1U);
        EXPECT_EQ(told.barriers[0].fate, InputStory::Fate::NotReady);
        EXPECT_EQ(recorded(first).barriers.size(), 1U) << "it is behind";
    });
}

TEST_F(Why, TellsOfOtherEvaluationsInside)
{
    VRequest other(context, false);
    second->addRequest(other);
    touch(first);

    QuorlTest::outputOf([&] {
        EXPECT_EQ(chainOf(recorded(third)), "third.feed:3 | another evaluation is inside second");
        EXPECT_EQ(recorded(first).verdict(), "is not reached");
        const Explanation told = explained(Recorder(context).evaluate(second, 1.0), second, second);
        EXPECT_EQ(told.verdict(), "does not run: another evaluation is inside");
    });
    second->removeRequest(other);
}

TEST_F(Why, TellsWhereACircleIsCut)
{
    network.connect(third, first, "back");
    QuorlTest::ask(third, context);

    const Explanation told = recorded(first);

    EXPECT_EQ(fatesOf(told), "back: a circle is cut here; value: ");
}

TEST_F(Why, TellsOfObjectsThatAreNotUpstream)
{
    EXPECT_EQ(recorded(network.node("stray")).verdict(), "is not upstream");
}

TEST_F(Why, TellsOfRequestsThatAreCancelled)
{
    touch(first);

    const Explanation told = recorded(first, [] { return true; });
    EXPECT_EQ(told.verdict(), "is not reached");
    EXPECT_EQ(told.barriers.at(0).fate, InputStory::Fate::Unvisited);

    int polls = 0;
    const Explanation late = recorded(third, [&] { return ++polls > 4; });
    EXPECT_EQ(late.verdict(), "does not run: the request was cancelled");
    EXPECT_EQ(late.story->inputs[0].fate, InputStory::Fate::Asked);
    EXPECT_EQ(late.story->inputs[1].fate, InputStory::Fate::Unvisited);
}

TEST_F(Why, TellsOfUpdatesThatFail)
{
    touch(first);
    first->whenUpdated = [](VRequest&) { return false; };
    const Account account = Recorder(context).evaluate(third, 1.0);

    EXPECT_EQ(explained(account, third, first).verdict(), "runs, and fails");
    EXPECT_EQ(explained(account, third, second).verdict(), "does not run: nothing is newer");
}

TEST_F(Why, TellsOfUpdatesThatEndThemselvesAsModified)
{
    touch(first);
    first->whenUpdated = [](VRequest&) -> bool { throw Node::ExecutionStatus(3, "later"); };

    Explanation told;
    QuorlTest::errorOutputOf([&] { told = recorded(third); });

    EXPECT_EQ(chainOf(told), "third.feed:3 second.feed:3 first.value:1 | first.value was changed");
}

TEST_F(Why, TellsOfUpdatesThatThrowAndFreesWhatTheyPassed)
{
    touch(first);
    first->whenUpdated = [](VRequest&) -> bool { throw std::runtime_error("no disc"); };
    const Account account = Recorder(context).evaluate(third, 1.0);

    EXPECT_EQ(account.failure, "no disc");
    EXPECT_EQ(explained(account, third, first).verdict(), "runs, and throws");
    EXPECT_EQ(explained(account, third, second).verdict(),
              "does not run: an update upstream has thrown");
    first->whenUpdated = {};
    EXPECT_EQ(recorded(third).verdict(), "runs");
}

TEST_F(Why, TellsOfUpdatesThatThrowWhatHasNoWords)
{
    touch(first);
    first->whenUpdated = [](VRequest&) -> bool { throw 42; };

    EXPECT_EQ(Recorder(context).evaluate(third, 1.0).failure,
              "something was thrown that does not say what it is");
}

TEST_F(Why, IsForeseenAndRunsNothing)
{
    touch(first);
    first->updates = 0;

    const Account account = foreseen(third, context, 1.0);

    EXPECT_EQ(chainOf(explained(account, third, third)),
              "third.feed:3 second.feed:3 first.value:1 | first.value was changed");
    EXPECT_EQ(first->updates, 0);
    EXPECT_EQ(explained(foreseen(third, context, 1.0, true), third, third).verdict(),
              "does not run: the request was cancelled");
}

/// By paths there are 2^40 visits.
TEST_F(Why, IsForeseenWhereThereAreTooManyPathsToWalk)
{
    RefPtr<Node> below = network.node("layer");
    below->input("value");
    for (int layer = 0; layer < 40; ++layer)
    {
        const RefPtr<Node> node = network.node("layer");
        network.connect(below, node, "left");
        network.connect(below, node, "right");
        below = node;
    }

    EXPECT_TRUE(foreseen(below, context, 1.0).isWhole);
    EXPECT_EQ(foreseen(below, context, 1.0).stories().size(), 41U);
}

} // namespace
} // namespace Zelm
