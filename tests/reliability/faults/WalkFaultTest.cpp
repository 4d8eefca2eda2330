#include <tests/reliability/faults/FailingMemory.h>
#include <tests/support/Node.h>

#include <quorl/objects/LevelLog.h>
#include <quorl/objects/VRequest.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <memory>
#include <new>
#include <string>
#include <vector>

/// Each allocation of a walk, and of what it has noted, fails once: nothing is accounted for twice.
namespace Quorl
{
namespace
{

using QuorlTest::FailingMemory;
using QuorlTest::Network;
using QuorlTest::Node;

constexpr long kNever = std::numeric_limits<long>::max();

/// A network with many paths.
class Ladder
{
public:
    Ladder()
    {
        constexpr int kObjects = 6;
        for (int at = 0; at < kObjects; ++at)
        {
            nodes_.push_back(network_.node("object " + std::to_string(at)));
            nodes_.back()->input("in");
            if (at > 0) takeFrom(at - 1, "a");
            if (at > 0) takeFrom(at - 1, "b");
            if (at > 1) takeFrom(at - 2, "c");
        }
        QuorlTest::ask(nodes_.back(), pool_);
    }

    /// Walks, and counts visits: by objects, in their order.
    /// \param failure the number of the allocation that fails.
    std::vector<std::int32_t> visits(long failure)
    {
        VRequest request(pool_, false);
        {
            const FailingMemory memory(failure);
            try
            {
                nodes_.back()->init_request(request, 1.0);
            }
            catch (const std::bad_alloc&)
            {
                EXPECT_TRUE(memory.hasFailed());
            }
            hasFailed = memory.hasFailed();
        }
        std::vector<std::int32_t> counts;
        for (const RefPtr<Node>& node : nodes_)
        {
            const auto level = request.Id->levels().find(node->ID);
            counts.push_back(level == request.Id->levels().end() ? 0 : level->second.Count);
        }
        return counts;
    }

    bool hasFailed = false;

private:
    void takeFrom(int source, const std::string& slot)
    {
        network_.connect(nodes_[static_cast<std::size_t>(source)], nodes_.back(), slot);
    }

    Network network_;
    std::vector<RefPtr<Node>> nodes_;
    const RefPtr<ValuePool> pool_ = QuorlTest::makePool();
};

TEST(WalkFaults, CountNoVisitTwice)
{
    const std::vector<std::int32_t> all = Ladder().visits(kNever);
    ASSERT_GT(all.front(), 1);
    bool hasFailed = true;
    for (long number = 1; hasFailed; ++number)
    {
        Ladder ladder;
        const std::vector<std::int32_t> visits = ladder.visits(number);
        hasFailed = ladder.hasFailed;
        for (std::size_t at = 0; at < all.size(); ++at)
            EXPECT_LE(visits[at], all[at])
                << "of object " << at << ", where allocation " << number << " has failed";
    }
}

TEST(LevelLogFaults, EnterEachRecordOnce)
{
    const LevelLog::Level once{1, 1, 1, 50, 50};
    const auto known = std::make_shared<const LevelLog::Records>(
        LevelLog::Records{{1, once}, {2, once}, {3, once}});
    for (long number = 1; number < 10; ++number)
    {
        LevelLog log;
        for (const std::int32_t object : {1, 4, 5}) log.add(object, once);
        log.add({known, 0, known->size(), 1});
        log.add(2, once);
        try
        {
            const FailingMemory memory(number);
            log.table();
        }
        catch (const std::bad_alloc&)
        {
        }
        log.add(5, once);

        std::vector<std::int32_t> counts;
        for (const auto& [object, level] : log.table()) counts.push_back(level.Count);
        EXPECT_EQ(counts, (std::vector<std::int32_t>{2, 2, 1, 1, 2}));
    }
}

} // namespace
} // namespace Quorl
