#include <quorl/objects/CancellableRequest.h>
#include <tests/support/Node.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <vector>

namespace Quorl
{
namespace
{

using QuorlTest::Network;
using QuorlTest::Node;
using testing::ElementsAre;
using testing::IsEmpty;

class CancellableRequestTest : public testing::Test
{
protected:
    CancellableRequestTest()
    {
        network.connect(source, middle, "first");
        network.connect(middle, end, "second");
    }

    bool request()
    {
        CancellableRequest ticket(pool, false, cancellation);
        return end->init_request(ticket, 1.0);
    }

    const RefPtr<ValuePool> pool = QuorlTest::makePool();
    std::atomic<bool> cancellation{false};
    Network network;
    RefPtr<Node> source = network.node("source");
    RefPtr<Node> middle = network.node("middle");
    RefPtr<Node> end = network.node("end");
};

TEST_F(CancellableRequestTest, EvaluatesLikeAnyOther)
{
    EXPECT_TRUE(request());
    EXPECT_THAT(network.takeLog(), ElementsAre("source", "middle", "end"));
    EXPECT_FALSE(request());
    EXPECT_THAT(network.takeLog(), IsEmpty());
}

TEST_F(CancellableRequestTest, RunsNothingIfItIsCancelledFromTheBeginning)
{
    cancellation = true;

    EXPECT_FALSE(request());
    EXPECT_THAT(network.takeLog(), IsEmpty());
}

TEST_F(CancellableRequestTest, EndsBehindTheObjectThatCancelsIt)
{
    source->whenUpdated = [this](VRequest&) { return cancellation = true; };

    EXPECT_FALSE(request());
    EXPECT_THAT(network.takeLog(), ElementsAre("source"));

    cancellation = false;
    EXPECT_TRUE(request());
    EXPECT_THAT(network.takeLog(), ElementsAre("middle", "end"));
}

TEST_F(CancellableRequestTest, LeavesTheTracesOfACancelledWalkInAnUnchangedNetwork)
{
    request();
    request();
    request();
    const RefPtr<VRequest::ID> latestOfSource = source->Latest;
    cancellation = true;

    EXPECT_FALSE(request());
    EXPECT_EQ(source->Latest, latestOfSource) << "the walk ends at the first input";
    EXPECT_NE(end->Latest, latestOfSource);
}

TEST_F(CancellableRequestTest, IsCancelledWithItsCopies)
{
    const CancellableRequest ticket(pool, true, cancellation);
    const CancellableRequest copy(ticket);
    EXPECT_FALSE(copy.isCancelled());
    cancellation = true;

    EXPECT_TRUE(ticket.isCancelled());
    EXPECT_TRUE(copy.isCancelled());
    EXPECT_EQ(copy.Id, ticket.Id);
    EXPECT_TRUE(copy.Flag);
}

/// Each object takes twice from the one before it: 2^60 paths.
TEST_F(CancellableRequestTest, VisitsObjectsAndNotPaths)
{
    constexpr int kObjects = 60;
    RefPtr<Node> last = end;
    for (int at = 0; at < kObjects; ++at)
    {
        const RefPtr<Node> next = network.node("object " + std::to_string(at));
        network.connect(last, next, "left");
        network.connect(last, next, "right");
        last = next;
    }
    CancellableRequest ticket(pool, false, cancellation);

    EXPECT_TRUE(last->init_request(ticket, 1.0));
    EXPECT_EQ(network.takeLog().size(), kObjects + 3U);
}

} // namespace
} // namespace Quorl
