#include <quorl/values/LocaleIndependentStrtod.h>
#include <quorl/values/VValueTrait.h>

#include <gtest/gtest.h>

#include <cerrno>
#include <clocale>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <random>
#include <string>

namespace
{

struct Parsed
{
    double number;
    long consumed;
    int error;
};

Parsed parse(const std::string& text)
{
    char* end = nullptr;
    errno = 0;
    const double number = Zelm_locale_independent_strtod(text.c_str(), &end);
    return {number, end - text.c_str(), errno};
}

constexpr double kInfinity = std::numeric_limits<double>::infinity();

TEST(LocaleIndependentStrtod, ReadsAPointUnderALocaleWithADecimalComma)
{
    const std::string before = std::setlocale(LC_ALL, nullptr);
    ::setenv("LOCPATH", TEST_LOCALES, 1);
    ASSERT_TRUE(std::setlocale(LC_ALL, "de_DE.UTF-8"));
    ASSERT_EQ(std::strtod("1,5", nullptr), 1.5);

    EXPECT_EQ(parse("1.5").number, 1.5);
    EXPECT_EQ(parse("1,5").number, 1.0);
    EXPECT_EQ(parse(".5").number, 0.5);
    EXPECT_EQ(Quorl::VValueTrait<double>::Text(1.5), "1.5");
    EXPECT_EQ(Quorl::VValueTrait<float>::Text(1.5F), "1.500000");

    std::setlocale(LC_ALL, before.c_str());
}

TEST(LocaleIndependentStrtod, ConsumesAnExponentLetterAndSignWithoutDigits)
{
    EXPECT_EQ(parse("1e").number, 1.0);
    EXPECT_EQ(parse("1e").consumed, 2);
    EXPECT_EQ(parse("1e-").number, 1.0);
    EXPECT_EQ(parse("1e-").consumed, 3);
    EXPECT_EQ(parse("1E+x").consumed, 3);
}

TEST(LocaleIndependentStrtod, GivesZeroAndTheStartWhereThereAreNoDigits)
{
    for (const char* text : {"", ".", "  .", "abc", "+-1", "e5", "- 1"})
    {
        EXPECT_EQ(parse(text).number, 0.0) << text;
        EXPECT_EQ(parse(text).consumed, 0) << text;
    }
}

TEST(LocaleIndependentStrtod, KeepsTheSignOfNoNumber)
{
    EXPECT_TRUE(std::signbit(parse("  -.").number));
    EXPECT_EQ(parse("  -.").consumed, 0);
    EXPECT_TRUE(std::signbit(parse("-").number));
    EXPECT_FALSE(std::signbit(parse("+").number));
}

TEST(LocaleIndependentStrtod, ClampsExponentsBeyond511AndSaysSo)
{
    EXPECT_EQ(parse("1e600").number, kInfinity);
    EXPECT_EQ(parse("1e600").error, ERANGE);
    EXPECT_EQ(parse("1e-600").number, 0.0);
    EXPECT_EQ(parse("1e-600").error, ERANGE);
    EXPECT_TRUE(std::isnan(parse("0e600").number)) << "nothing times infinity";
}

TEST(LocaleIndependentStrtod, SaysNothingOfInfinityWithinTheTableOfPowers)
{
    EXPECT_EQ(parse("1e400").number, kInfinity);
    EXPECT_EQ(parse("1e400").error, 0);
    EXPECT_EQ(parse("1e511").number, kInfinity);
    EXPECT_EQ(parse("1e511").error, 0);
}

TEST(LocaleIndependentStrtod, LosesWhatIsSmallerThanThePowersCanTell)
{
    for (const char* text : {"1e-310", "2.2250738585072014e-308", "5e-324"})
        EXPECT_EQ(parse(text).number, 0.0) << text;
}

TEST(LocaleIndependentStrtod, UsesEighteenDigitsAndKeepsTheMagnitude)
{
    EXPECT_EQ(parse("1234567890123456789012345").number, 1.2345678901234568e+24);
    EXPECT_EQ(parse("1234567890123456789012345").consumed, 25);
    EXPECT_EQ(parse("0.0000000000000000001").number, 0.0) << "leading zeros count";
    EXPECT_EQ(parse("0.00000000000000001").number, 1e-17);
}

TEST(LocaleIndependentStrtod, StopsAtTheFirstCharacterThatIsNotOfANumber)
{
    EXPECT_EQ(parse("0x10").number, 0.0);
    EXPECT_EQ(parse("0x10").consumed, 1);
    EXPECT_EQ(parse("1e1e1").number, 10.0);
    EXPECT_EQ(parse("1e1e1").consumed, 3);
    EXPECT_EQ(parse("1.2.3").number, 1.2);
    EXPECT_EQ(parse("1.2.3").consumed, 3);
    EXPECT_EQ(parse(" \t\n\v\f\r-7 ").number, -7.0);
    EXPECT_EQ(parse(" \t\n\v\f\r-7 ").consumed, 8);
}

TEST(LocaleIndependentStrtod, AcceptsANullEnd)
{
    EXPECT_EQ(Zelm_locale_independent_strtod("2.5", nullptr), 2.5);
}

TEST(LocaleIndependentStrtod, SurvivesExponentsOfAnyLength)
{
    const Parsed huge = parse("1e" + std::string(100000, '9'));
    EXPECT_EQ(huge.number, kInfinity);
    EXPECT_EQ(huge.error, ERANGE);
    EXPECT_EQ(huge.consumed, 100002);
    EXPECT_EQ(parse("1e-" + std::string(100000, '9')).number, 0.0);
}

TEST(LocaleIndependentStrtod, AgreesWithTheStandardToAFewUnitsInTheLastPlace)
{
    const unsigned seed = 20261120;
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937_64 random(seed);
    std::uniform_real_distribution<double> mantissa(1.0, 10.0); // leading zeros would cost digits
    std::uniform_int_distribution<int> exponent(-280, 280);
    for (int i = 0; i < 20000; ++i)
    {
        char text[64];
        std::snprintf(text, sizeof text, "%.17ge%d", mantissa(random), exponent(random));
        const double expected = std::strtod(text, nullptr);
        const double got = parse(text).number;
        EXPECT_NEAR(got / expected, 1.0, 1e-14) << text;
    }
}

} // namespace
