#include <quorl/objects/VObject.h>
#include <tests/support/Node.h>

#include <gtest/gtest.h>

#include <pthread.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

/// How much of a thread's stack deep networks need.
namespace Quorl
{
namespace
{

using QuorlTest::ask;
using QuorlTest::Network;
using QuorlTest::Node;

constexpr int kDepth = 100000;
constexpr std::size_t kSmallStack = 256 * 1024; // bytes; some 2 for each object of the chain

void* run(void* work)
{
    (*static_cast<std::function<void()>*>(work))();
    return nullptr;
}

/// Does some work on a thread with a small stack.
void onSmallStack(std::function<void()> work)
{
    pthread_attr_t attributes;
    ASSERT_EQ(pthread_attr_init(&attributes), 0);
    ASSERT_EQ(pthread_attr_setstacksize(&attributes, kSmallStack), 0);
    pthread_t thread{};
    ASSERT_EQ(pthread_create(&thread, &attributes, run, &work), 0);
    pthread_attr_destroy(&attributes);
    ASSERT_EQ(pthread_join(thread, nullptr), 0);
}

/// A chain, of which the last object is where requests begin.
std::vector<RefPtr<Node>> buildChain(Network& network)
{
    std::vector<RefPtr<Node>> chain;
    chain.reserve(kDepth);
    for (int i = 0; i < kDepth; ++i)
    {
        chain.push_back(network.node("object " + std::to_string(i)));
        if (i > 0) network.connect(chain[chain.size() - 2], chain.back(), "input");
    }
    return chain;
}

TEST(VObjectRequest, WalksADeepChainOnASmallStack)
{
    Network network;
    const auto chain = buildChain(network);
    bool wasModified = false;
    bool wasModifiedAgain = true;

    onSmallStack([&] {
        wasModified = ask(chain.back());
        wasModifiedAgain = ask(chain.back());
    });

    EXPECT_TRUE(wasModified);
    EXPECT_FALSE(wasModifiedAgain);
    EXPECT_EQ(network.takeLog().size(), chain.size() - 1)
        << "all but the first, which takes nothing";
    EXPECT_EQ(chain.front()->Executor.Level, kDepth - 1);
    EXPECT_EQ(chain.front()->RequestCounter.value(), 0);
}

TEST(VObjectRequest, LeavesADeepChainByAnExceptionOnASmallStack)
{
    Network network;
    const auto chain = buildChain(network);
    chain[1]->whenUpdated = [](VRequest&) -> bool { throw std::string("enough"); };
    string caught;

    onSmallStack([&] {
        try
        {
            ask(chain.back());
        }
        catch (const std::string& thrown)
        {
            caught = thrown;
        }
    });

    EXPECT_EQ(caught, "enough");
    EXPECT_EQ(chain[2]->RequestCounter.value(), 0);
    EXPECT_TRUE(chain[2]->Current) << "as a walk that an exception leaves has it";
}

TEST(VObject, EndsADeepChainOnASmallStack)
{
    auto network = std::make_unique<Network>();
    auto chain = buildChain(*network);
    const WeakPtr<VObject> first = chain.front();
    ask(chain.back());

    onSmallStack([&] {
        chain.clear();
        network.reset();
    });

    EXPECT_FALSE(first);
}

} // namespace
} // namespace Quorl
