#include <quorl/foundation/Ageable.h>
#include <quorl/foundation/Watch.h>
#include <quorl/foundation/Watched.h>

#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <thread>

namespace Tolmen
{
namespace
{

TEST(Watch, IsAlarmedByAWriteToAnAgeThatItKeeps)
{
    Watch watch;
    Ageable kept(5);
    Ageable other(5);
    watch.keep(&kept);

    other.touch();
    other = kept;
    EXPECT_EQ(watch.alarms(), 0U);

    kept.touch();
    EXPECT_EQ(watch.alarms(), 1U);
    kept = other;
    EXPECT_EQ(watch.alarms(), 2U) << "also if it gets older";
}

TEST(Watch, IsAlarmedByAVariableThatComesOrGoes)
{
    Watch watch;
    const int key = 0;
    const auto before = Watch::variables();
    watch.keep(&key);

    Watch::variablesChange(&key);

    EXPECT_EQ(watch.alarms(), 1U);
    EXPECT_NE(Watch::variables(), before);
}

TEST(Watch, KeepsAPlaceOnce)
{
    Watch watch;
    Ageable age(5);
    watch.keep(&age);
    watch.keep(&age);

    age.touch();

    EXPECT_EQ(watch.alarms(), 1U);
}

TEST(Watch, HearsOfWhatAnInnerOneKeepsAsWell)
{
    Watch outer;
    Ageable age(5);
    outer.keep(&age);
    {
        Watch inner;
        inner.keep(&age);
        age.touch();
        EXPECT_EQ(inner.alarms(), 1U);
    }
    EXPECT_EQ(outer.alarms(), 1U);

    age.touch();
    EXPECT_EQ(outer.alarms(), 2U) << "when the inner one has ended";
}

TEST(Watch, MayEndBeforeOneThatWasSetLater)
{
    auto first = std::make_unique<Watch>();
    Watch second;
    Ageable age(5);
    first->keep(&age);
    second.keep(&age);

    first.reset();
    age.touch();

    EXPECT_EQ(second.alarms(), 1U);
}

TEST(Watch, IsOfItsThread)
{
    Watch watch;
    Ageable age(5);
    watch.keep(&age);

    std::thread([&] { age.touch(); }).join();

    EXPECT_EQ(watch.alarms(), 0U);
}

TEST(Watched, ChangesTheShapeWhenItIsAssigned)
{
    Watched<bool> flag = false;
    auto before = Watch::shape();

    EXPECT_FALSE(flag);
    EXPECT_EQ(Watch::shape(), before) << "reading changes nothing";

    flag = true;
    EXPECT_TRUE(flag);
    EXPECT_NE(Watch::shape(), before);

    before = Watch::shape();
    const Watched<bool> copied = flag;
    EXPECT_TRUE(copied);
    EXPECT_EQ(Watch::shape(), before) << "a copy is another field";
    flag = copied;
    EXPECT_NE(Watch::shape(), before) << "an assignment counts, whatever the value";
}

TEST(WatchedTable, ChangesTheShapeWhenEntriesComeAndGo)
{
    WatchedTable<std::set<int>> table;
    auto before = Watch::shape();

    EXPECT_TRUE(table.insert(3).second);
    EXPECT_NE(Watch::shape(), before);

    before = Watch::shape();
    EXPECT_TRUE(table.contains(3));
    EXPECT_EQ(Watch::shape(), before);

    EXPECT_EQ(table.erase(3), 1U);
    EXPECT_NE(Watch::shape(), before);

    before = Watch::shape();
    table = std::set<int>{1, 2};
    EXPECT_EQ(table.size(), 2U);
    EXPECT_NE(Watch::shape(), before);

    before = Watch::shape();
    table.clear();
    EXPECT_TRUE(table.empty());
    EXPECT_NE(Watch::shape(), before);
}

} // namespace
} // namespace Tolmen
