#include <quorl/foundation/Rare.h>

#include <gtest/gtest.h>

#include <cstddef>
#include <functional>
#include <list>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace
{

using Tolmen::Rare;

static_assert(sizeof(Rare<std::map<int, int>>) == sizeof(void*));

TEST(Rare, IsEmptyAtFirst)
{
    const Rare<std::set<int>> none;

    EXPECT_TRUE(none.empty());
    EXPECT_EQ(none.size(), 0U);
    EXPECT_EQ(none.begin(), none.end());
    EXPECT_EQ(none.find(1), none.end());
    EXPECT_EQ(none.upper_bound(1), none.end());
    EXPECT_FALSE(none.contains(1));
}

TEST(Rare, HoldsWhatIsPutInAsTheContainerDoes)
{
    Rare<std::set<int>> numbers;
    numbers.insert(2);
    numbers.insert(1);

    EXPECT_FALSE(numbers.insert(2).second);
    EXPECT_EQ(std::vector<int>(numbers.begin(), numbers.end()), (std::vector<int>{1, 2}));
    EXPECT_EQ(*numbers.find(2), 2);
    EXPECT_EQ(numbers.find(3), numbers.end());
    EXPECT_EQ(numbers.upper_bound(2), numbers.end());
    EXPECT_EQ(*numbers.upper_bound(1), 2);
    EXPECT_EQ(numbers.erase(1), 1U);
    EXPECT_EQ(numbers.size(), 1U);
}

TEST(Rare, IsAssignedAListAndCopiedWhole)
{
    Rare<std::list<int>> numbers;
    numbers = {1, 2};
    Rare<std::list<int>> copied(numbers);
    copied.push_back(3);

    EXPECT_EQ(numbers.back(), 2);
    EXPECT_EQ(copied.back(), 3);
    copied = Rare<std::list<int>>();
    EXPECT_TRUE(copied.empty());
}

TEST(Rare, GivesTheValueOfAKey)
{
    Rare<std::map<std::string, int>> numbers;
    ++numbers["a"];
    ++numbers["a"];

    EXPECT_EQ(numbers.find("a")->second, 2);
}

TEST(Rare, IsEmptyWhileWhatItHeldEnds)
{
    struct Witness
    {
        explicit Witness(const Rare<std::list<std::shared_ptr<Witness>>>& owner) : list(owner) {}
        ~Witness() { EXPECT_TRUE(list.empty()); }
        const Rare<std::list<std::shared_ptr<Witness>>>& list;
    };
    Rare<std::list<std::shared_ptr<Witness>>> list;
    list.push_back(std::make_shared<Witness>(list));

    list.clear();

    EXPECT_TRUE(list.empty());
}

TEST(Rare, IsWholeWhileWhatItHeldBeforeAnAssignmentEnds)
{
    Rare<std::list<std::function<void()>>> list;
    std::vector<std::size_t> sizes;
    const auto noteWhenEnding = [&](int* /*nothing*/) { sizes.push_back(list.size()); };
    for (int number = 0; number < 2; ++number)
        list.push_back([held = std::shared_ptr<int>(nullptr, noteWhenEnding)] {});

    list = std::list<std::function<void()>>(3);

    EXPECT_EQ(sizes, (std::vector<std::size_t>{3, 3}));
}

} // namespace
