#include <tests/model/EvaluationGame.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <random>
#include <string>
#include <vector>

/// All networks of up to three objects, in two contexts, through all histories of three edits, the
/// kernel against the model. By itself a share of them, which begins at random and is told; all
/// with QUORL_EXHAUSTIVE in the environment.
namespace QuorlTest::Evaluation
{
namespace
{

constexpr int kFirstPool = 1;
constexpr int kSecondPool = 2;
constexpr int kEditsOfAnObject = 5;
constexpr int kEdits = 3;
constexpr std::uint64_t kShare = 20000; // cases of each size

// Of a game's objects as they begin: each has an output and two inputs, in this order.
int outputOf(int object)
{
    return 3 * object;
}
int inputOf(int object, int which)
{
    return 2 * object + which;
}

/// Digits of a number to any base, from the last.
class Digits
{
public:
    explicit Digits(std::uint64_t number) : left_(number) {}
    int next(int base)
    {
        const auto digit = static_cast<int>(left_ % static_cast<std::uint64_t>(base));
        left_ /= static_cast<std::uint64_t>(base);
        return digit;
    }

private:
    std::uint64_t left_;
};

std::uint64_t power(int base, int exponent)
{
    std::uint64_t result = 1;
    for (int i = 0; i < exponent; ++i) result *= static_cast<std::uint64_t>(base);
    return result;
}

/// Each input shows its own parameter or the output of any object.
std::uint64_t cases(int objects)
{
    return power(objects + 1, 2 * objects) * power(kEditsOfAnObject * objects, kEdits);
}

Move edit(int number, int objects)
{
    const int object = number / kEditsOfAnObject;
    switch (number % kEditsOfAnObject)
    {
        case 0: return {Move::SetText, outputOf(object), kFirstPool, 0};
        case 1: return {Move::Touch, outputOf(object), kSecondPool, 0};
        case 2: return {Move::Empty, inputOf(object, 0), 0, 0};
        case 3: return {Move::Attach, inputOf(object, 0), outputOf((object + 1) % objects), 0};
        default: return {Move::Behave, object, kOutcome, kFails};
    }
}

std::vector<Move> history(std::uint64_t number, int objects)
{
    Digits digits(number);
    std::vector<Move> moves;
    for (int input = 0; input < 2 * objects; ++input)
        if (const int source = digits.next(objects + 1); source < objects)
            moves.push_back({Move::Attach, input, outputOf(source), 0});
    const Move first{Move::Request, 0, kFirstPool, 0};
    const Move second{Move::Request, 0, kSecondPool, 0};
    moves.insert(moves.end(), {first, second});
    for (int count = 0; count < kEdits; ++count)
    {
        moves.push_back(edit(digits.next(kEditsOfAnObject * objects), objects));
        moves.push_back(count % 2 == 0 ? first : second);
    }
    moves.push_back(second);
    return moves;
}

class Exhaustive : public testing::TestWithParam<int>
{
};

TEST_P(Exhaustive, AgreesWithTheModel)
{
    const int objects = GetParam();
    const std::uint64_t all = cases(objects);
    const bool isWhole = std::getenv("QUORL_EXHAUSTIVE") != nullptr;
    const std::uint64_t step = isWhole || all <= kShare ? 1 : all / kShare;
    const std::uint64_t begin = step == 1 ? 0 : std::random_device()() % step;
    std::uint64_t count = 0;
    for (std::uint64_t number = begin; number < all; number += step, ++count)
    {
        std::string difference;
        {
            Game game(objects, 0);
            game.play(history(number, objects));
            difference = game.difference();
        }
        ASSERT_EQ(difference, "") << "case " << number << " of " << objects << " objects";
    }
    std::cout << count << " of " << all << " cases, from " << begin << " in steps of " << step
              << "\n";
}

INSTANTIATE_TEST_SUITE_P(Objects, Exhaustive, testing::Values(1, 2, 3));

} // namespace
} // namespace QuorlTest::Evaluation
