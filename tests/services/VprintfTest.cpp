#include <quorl/services/Vprintf.h>

#include <tests/support/CapturedOutput.h>

#include <gtest/gtest.h>

#include <cstdlib>

namespace Quorl
{
namespace
{

using QuorlTest::errorOutputOf;

/// A state as at the start of a process, with a value of the variable or without one.
struct Fresh
{
    explicit Fresh(const char* variable)
    {
        if (variable)
            ::setenv("VVERBOSITY", variable, 1);
        else
            ::unsetenv("VVERBOSITY");
        verbosity_level = -1;
    }
    ~Fresh()
    {
        ::unsetenv("VVERBOSITY");
        verbosity_level = 0;
    }
};

std::string printed(int level)
{
    return errorOutputOf([&] { Vprintf(level, "<%d>", level); });
}

TEST(Vprintf, PrintsLevelZeroWithoutTheVariable)
{
    const Fresh fresh(nullptr);

    EXPECT_EQ(printed(0), "<0>");
    EXPECT_EQ(printed(1), "");
    EXPECT_EQ(verbosity_level, 0);
}

TEST(Vprintf, PrintsUpToTheLevelInTheVariable)
{
    const Fresh fresh("3");

    EXPECT_EQ(printed(3), "<3>");
    EXPECT_EQ(printed(4), "");
    EXPECT_EQ(printed(-7), "<-7>");
    EXPECT_EQ(verbosity_level, 3);
}

TEST(Vprintf, ReadsTheVariableOnceOnlyUnlessItIsNegative)
{
    {
        const Fresh fresh("1");
        printed(0);
        ::setenv("VVERBOSITY", "5", 1);
        EXPECT_EQ(printed(5), "");
    }
    const Fresh fresh("-2");
    EXPECT_EQ(printed(0), "");
    EXPECT_EQ(printed(-2), "<-2>");
    ::setenv("VVERBOSITY", "5", 1);
    EXPECT_EQ(printed(5), "<5>");
}

TEST(Vprintf, NeverReadsTheVariableIfTheApplicationHasSetTheLevel)
{
    const Fresh fresh("9");
    verbosity_level = 2;

    EXPECT_EQ(printed(3), "");
    EXPECT_EQ(printed(2), "<2>");
}

TEST(Vprintf, AddsNoLineEndAndPrintsNothingToStandardOutput)
{
    const Fresh fresh(nullptr);

    EXPECT_EQ(QuorlTest::outputOf([] { printed(0); }), "");
}

TEST(Vprintf, TellsWhetherItPrints)
{
    {
        const Fresh fresh("3");
        EXPECT_FALSE(isVprintfAudible(4));
        EXPECT_TRUE(isVprintfAudible(3));
        EXPECT_EQ(verbosity_level, 3) << "as if it had been asked to print";
    }
    const Fresh fresh("-1");
    EXPECT_FALSE(isVprintfAudible(0));
    EXPECT_TRUE(isVprintfAudible(-1));
    ::setenv("VVERBOSITY", "5", 1);
    EXPECT_TRUE(isVprintfAudible(5)) << "a negative one is read again";
}

} // namespace
} // namespace Quorl
