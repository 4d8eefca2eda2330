#include <quorl/objects/VObject.h>
#include <tests/support/Node.h>

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

/// What an update is made of, in which order, and under which lock.
namespace Quorl
{
namespace
{

using QuorlTest::ask;
using QuorlTest::makePool;
using QuorlTest::Network;
using QuorlTest::Node;

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

} // namespace
} // namespace Quorl
