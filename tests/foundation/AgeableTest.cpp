#include <quorl/foundation/Ageable.h>

#include <gtest/gtest.h>

#include <cstdlib>

namespace Tolmen
{
namespace
{

TEST(Ageable, IsThatOfTheLastChangeWhenNew)
{
    const Ageable before = Ageable::GlobalTime;
    const Ageable first;
    const Ageable second;

    EXPECT_EQ(first, second);
    EXPECT_FALSE(first < second);
    EXPECT_FALSE(second < first);
    EXPECT_EQ(first, before);
    EXPECT_EQ(Ageable::GlobalTime, before) << "the clock stands";
}

TEST(Ageable, IsYoungerThanAllWhenTouched)
{
    Ageable first;
    const Ageable second;
    const auto clock = Ageable::GlobalTime.stamp();
    first.touch();

    EXPECT_EQ(first.stamp(), clock + 1);
    EXPECT_EQ(Ageable::GlobalTime, first);
    EXPECT_LT(second, first);
    EXPECT_GT(first, second);
    EXPECT_NE(first, second);
    EXPECT_LE(second, first);
    EXPECT_GE(first, second);
}

TEST(Ageable, CopiesTheStamp)
{
    Ageable first;
    first.touch();
    const Ageable copied = first;
    first.touch();

    EXPECT_EQ(copied.stamp(), first.stamp() - 1);
}

TEST(Ageable, KnowsAnAgeOlderThanTheStartOfTheClock)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe"); // a process whose clock has just started
    EXPECT_EXIT(std::exit(Ageable::Ooooold < Ageable::GlobalTime ? 7 : 8),
                testing::ExitedWithCode(7), "");
    EXPECT_LT(Ageable::Ooooold, Ageable(0));
}

TEST(Ageable, RaisesAndNeverLowers)
{
    Ageable age(5);
    raiseAge(age, Ageable(3));
    EXPECT_EQ(age.stamp(), 5);
    raiseAge(age, Ageable(8));
    EXPECT_EQ(age.stamp(), 8);
}

} // namespace
} // namespace Tolmen
