#include <quorl/foundation/NameIndex.h>

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <string>

namespace
{

using Tolmen::NameIndex;
using Names = std::map<std::string, int>;

TEST(NameIndex, FindsNothingInAnEmptyOne)
{
    NameIndex<Names::value_type> index;
    Names::value_type entry{"a", 1};
    index.erase(entry);

    EXPECT_EQ(index.find("a"), nullptr);
    EXPECT_EQ(index.size(), 0U);
}

TEST(NameIndex, TellsAnEntryFromAnotherOfItsName)
{
    NameIndex<Names::value_type> index;
    Names::value_type entry{"a", 1};
    Names::value_type other{"a", 2};
    index.insert(entry);
    index.erase(other);

    EXPECT_EQ(index.find("a"), &entry);
    index.clear();
    EXPECT_EQ(index.find("a"), nullptr);
}

TEST(NameIndex, AgreesWithAMap)
{
    constexpr unsigned kSeed = 20261122;
    constexpr unsigned kNames = 700;
    std::mt19937 random(kSeed);
    const auto anyName = [&] { return "name " + std::to_string(random() % kNames); };
    NameIndex<Names::value_type> index;
    Names map;
    for (int step = 1; step <= 50000; ++step)
    {
        const auto [entry, isNew] = map.emplace(anyName(), step);
        if (isNew) index.insert(*entry);
        if (const auto leaving = map.find(anyName()); leaving != map.end() && step % 3 != 0)
        {
            index.erase(*leaving);
            map.erase(leaving);
        }
        const std::string wanted = anyName();
        const auto known = map.find(wanted);
        ASSERT_EQ(index.find(wanted), known == map.end() ? nullptr : &*known) << "seed " << kSeed;
        ASSERT_EQ(index.size(), map.size());
    }
}

} // namespace
