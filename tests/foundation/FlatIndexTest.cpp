#include <quorl/foundation/FlatIndex.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <map>
#include <random>
#include <vector>

namespace
{

using Tolmen::FlatIndex;

TEST(FlatIndex, FindsNothingInAnEmptyOne)
{
    const FlatIndex<std::int32_t, int> index;
    EXPECT_EQ(index.find(0), 0);
    EXPECT_EQ(index.find(-1), 0);
}

TEST(FlatIndex, FindsWhatWasEntered)
{
    FlatIndex<std::int32_t, int> index;
    index.insert(0, 1);
    index.insert(-1, 2);
    index.insert(std::numeric_limits<std::int32_t>::min(), 3);
    EXPECT_EQ(index.find(0), 1);
    EXPECT_EQ(index.find(-1), 2);
    EXPECT_EQ(index.find(std::numeric_limits<std::int32_t>::min()), 3);
    EXPECT_EQ(index.find(1), 0);
}

TEST(FlatIndex, AgreesWithAMap)
{
    constexpr unsigned kSeed = 20260101;
    std::mt19937 random(kSeed);
    FlatIndex<std::int64_t, int> index;
    std::map<std::int64_t, int> map;
    for (int step = 1; step <= 20000; ++step)
    {
        const auto key = static_cast<std::int64_t>(random() % 4096) << (random() % 40);
        if (map.emplace(key, step).second) index.insert(key, step);
        const auto other = static_cast<std::int64_t>(random() % 4096) << (random() % 40);
        const auto known = map.find(other);
        ASSERT_EQ(index.find(other), known == map.end() ? 0 : known->second) << "seed " << kSeed;
    }
    for (const auto& [key, value] : map) ASSERT_EQ(index.find(key), value);
}

TEST(FlatIndex, FindsByAddresses)
{
    std::vector<int> values(10000);
    FlatIndex<const int*, int*> index;
    for (int& value : values) index.insert(&value, &value);
    for (int& value : values) ASSERT_EQ(index.find(&value), &value);
    EXPECT_EQ(index.find(nullptr), nullptr);
}

} // namespace
