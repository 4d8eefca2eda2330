#include <quorl/objects/LevelLog.h>

#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <vector>

namespace Quorl
{
namespace
{

using Level = LevelLog::Level;

Level once(std::int32_t level, std::int32_t caller)
{
    return {level, level, 1, caller, caller};
}

std::shared_ptr<const LevelLog::Records> evaluation(LevelLog::Records records)
{
    return std::make_shared<const LevelLog::Records>(std::move(records));
}

TEST(LevelLog, IsEmptyAtFirst)
{
    EXPECT_TRUE(LevelLog().table().empty());
}

TEST(LevelLog, KeepsTheFirstCallerOfEachBound)
{
    LevelLog log;
    log.add(7, once(3, 100));
    log.add(7, once(3, 101));
    log.add(7, once(1, 102));
    log.add(7, once(1, 103));

    EXPECT_EQ(log.table().at(7), (Level{1, 3, 4, 102, 100}));
}

TEST(LevelLog, ShowsWhatIsNotedAfterItWasAsked)
{
    LevelLog log;
    log.add(7, once(2, 100));
    const LevelLog::Table& table = log.table();
    const Level& seven = table.at(7);
    log.add(7, once(5, 101));
    log.add(3, once(1, 102));

    EXPECT_EQ(&log.table(), &table);
    EXPECT_EQ(seven, (Level{2, 5, 2, 100, 101}));
    EXPECT_EQ(table.begin()->first, 3);
}

TEST(LevelLog, TakesAPartOfAnEvaluationAtItsPlaceInTheOrder)
{
    const auto known = evaluation({{1, once(1, 50)}, {2, once(2, 51)}, {3, once(2, 52)}});
    LevelLog log;
    log.add(2, once(5, 100));
    log.add({known, 1, 3, 3});
    log.add(3, once(5, 101));

    EXPECT_FALSE(log.table().contains(1));
    EXPECT_EQ(log.table().at(2), (Level{5, 5, 2, 100, 100}));
    EXPECT_EQ(log.table().at(3), (Level{5, 5, 2, 52, 52}));
}

TEST(LevelLog, CountsNoFurtherThanTheLargestNumber)
{
    constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();
    LevelLog log;
    log.add(1, {1, 1, kMost - 1, 2, 2});
    log.add(1, {1, 1, 5, 2, 2});

    EXPECT_EQ(log.table().at(1).Count, kMost);
}

TEST(LevelLog, TakesMorePartsThanItLetsWait)
{
    constexpr std::int32_t kParts = 5000;
    const auto known = evaluation({{1, once(1, 50)}});
    LevelLog log;
    for (std::int32_t at = 0; at < kParts; ++at) log.add({known, 0, 1, at});

    EXPECT_EQ(log.table().at(1), (Level{1, kParts, kParts, 50, 50}));
}

} // namespace
} // namespace Quorl
