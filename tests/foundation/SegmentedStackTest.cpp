#include <quorl/foundation/SegmentedStack.h>

#include <gtest/gtest.h>

#include <stdexcept>
#include <vector>

namespace Tolmen
{
namespace
{

class Element
{
public:
    Element(int given, std::vector<int>& ended) : number(given), ended_(ended)
    {
        if (given < 0) throw std::invalid_argument("negative");
    }
    ~Element() { ended_.push_back(number); }
    Element(const Element&) = delete;
    Element& operator=(const Element&) = delete;

    const int number;

private:
    std::vector<int>& ended_;
};

using Stack = SegmentedStack<Element, 2>;

TEST(SegmentedStack, ShowsWhatWasPushedLast)
{
    std::vector<int> ended;
    Stack stack;
    EXPECT_TRUE(stack.isEmpty());

    for (int number = 0; number < 5; ++number)
    {
        const Element& pushed = stack.push(number, ended);
        EXPECT_EQ(&pushed, &stack.top());
    }
    for (int number = 4; number >= 0; --number)
    {
        EXPECT_EQ(stack.top().number, number);
        stack.pop();
    }

    EXPECT_TRUE(stack.isEmpty());
    EXPECT_EQ(ended, (std::vector{4, 3, 2, 1, 0}));
}

TEST(SegmentedStack, KeepsElementsWhereTheyAre)
{
    std::vector<int> ended;
    Stack stack;
    const Element& first = stack.push(0, ended);

    for (int number = 1; number < 100; ++number) stack.push(number, ended);
    while (&stack.top() != &first) stack.pop();

    EXPECT_EQ(first.number, 0);
    EXPECT_EQ(ended.size(), 99);
}

TEST(SegmentedStack, EndsWhatIsLeftFromTheTopDown)
{
    std::vector<int> ended;
    {
        Stack stack;
        for (int number = 0; number < 3; ++number) stack.push(number, ended);
    }
    EXPECT_EQ(ended, (std::vector{2, 1, 0}));
}

TEST(SegmentedStack, IsAsBeforeIfAnElementThrows)
{
    std::vector<int> ended;
    Stack stack;
    stack.push(1, ended);
    stack.push(2, ended);

    EXPECT_THROW(stack.push(-1, ended), std::invalid_argument);

    EXPECT_EQ(stack.top().number, 2);
    EXPECT_TRUE(ended.empty());
}

} // namespace
} // namespace Tolmen
