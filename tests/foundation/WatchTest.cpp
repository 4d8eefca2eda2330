#include <quorl/foundation/Ageable.h>
#include <quorl/foundation/ReferenceBase.h>
#include <quorl/foundation/Watch.h>
#include <quorl/foundation/Watched.h>

#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <string>
#include <thread>
#include <type_traits>
#include <utility>

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

TEST(Watch, IsAlarmedByAThreadThatKeepsNone)
{
    Watch watch;
    Ageable age(5);
    watch.keep(&age);

    std::thread([&] { age.touch(); }).join();

    EXPECT_EQ(watch.alarms(), 1U);
    EXPECT_EQ(Watch().alarms(), 0U) << "of what was written before";
}

TEST(Watch, IsNotAlarmedByAThreadThatKeepsItsOwn)
{
    Watch watch;
    Ageable age(5);
    watch.keep(&age);

    std::thread([] {
        Watch other;
        Ageable itsAge(5);
        other.keep(&itsAge);
        itsAge.touch();
        EXPECT_EQ(other.alarms(), 1U);
    }).join();

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

TEST(WatchedTable, ChangesTheShapeWhenItTakesTheEntriesOfAnother)
{
    WatchedTable<std::set<int>> table;
    WatchedTable<std::set<int>> other;
    other.insert({1, 2});
    auto before = Watch::shape();

    table = other;
    EXPECT_EQ(table, (std::set<int>{1, 2}));
    EXPECT_NE(Watch::shape(), before);

    table.erase(1);
    before = Watch::shape();
    std::swap(table, other);
    EXPECT_EQ(table, (std::set<int>{1, 2}));
    EXPECT_EQ(other, std::set<int>{2});
    EXPECT_NE(Watch::shape(), before);
}

// What could be changed without a word must not be had.
static_assert(!std::is_convertible_v<Watched<std::string>&, std::string&>);
static_assert(!std::is_convertible_v<WatchedTable<std::set<int>>&, std::set<int>&>);

TEST(ReferenceBase, ChangesTheShapeOfNetworksIfItEndsBehindItsOwners)
{
    class Part : public ReferenceBase<Part>
    {
    };
    const auto before = Watch::shape();
    {
        const StrongPtr<Part, Part> part(new Part);
        const Part onStack;
        EXPECT_TRUE((WeakPtrImpl<Part, Part>(&onStack)));
    }
    EXPECT_EQ(Watch::shape(), before);

    auto* const part = new Part;
    const StrongPtr<Part, Part> owner(part);
    delete part;

    EXPECT_FALSE(owner);
    EXPECT_NE(Watch::shape(), before);
}

} // namespace
} // namespace Tolmen
