#include <quorl/foundation/DeadEntries.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <list>
#include <map>

namespace Tolmen
{
namespace
{

// Negative numbers stand for the dead.
bool isDead(int entry)
{
    return entry < 0;
}

TEST(DeadEntries, LeaveATableBeforeItIsMuchLargerThanWhatLivesInIt)
{
    std::list<int> table{1, 2, 3};
    DeadEntries dead;
    std::size_t largest = 0;
    for (int number = 0; number < 10'000; ++number)
    {
        dead.takeOut(table, &isDead);
        table.push_back(-1);
        largest = std::max(largest, table.size());
    }

    EXPECT_LE(largest, 16U);
    table.remove_if(&isDead);
    EXPECT_EQ(table, (std::list<int>{1, 2, 3})) << "in their order";
}

TEST(DeadEntries, StayWhileAWalkIsUnderWay)
{
    std::multimap<int, int> table;
    DeadEntries dead;
    {
        const DeadEntries::Walk walk(dead);
        for (int number = 0; number < 100; ++number)
        {
            dead.takeOut(table, [](const auto& entry) { return isDead(entry.second); });
            table.emplace(number, -1);
        }
        EXPECT_EQ(table.size(), 100U);
    }

    dead.takeOut(table, [](const auto& entry) { return isDead(entry.second); });
    EXPECT_TRUE(table.empty());
}

TEST(DeadEntries, AreNotLookedForAgainUntilTheTableHasDoubled)
{
    std::list<int> table(100, 1);
    DeadEntries dead;
    int looks = 0;
    const auto look = [&](int entry) {
        looks += entry;
        return false;
    };

    dead.takeOut(table, look);
    table.resize(199, 1);
    dead.takeOut(table, look);

    EXPECT_EQ(looks, 100);
}

} // namespace
} // namespace Tolmen
