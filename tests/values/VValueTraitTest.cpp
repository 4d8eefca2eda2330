#include <quorl/values/VValueTrait.h>

#include <quorl/tasks/VThreadManager.h>
#include <quorl/values/VGraph.h>

#include <gtest/gtest.h>

#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <locale>
#include <random>
#include <sstream>
#include <stdexcept>

namespace Quorl
{

namespace
{

template <class T>
T read(const string& text, T before = T())
{
    T datum = before;
    EXPECT_TRUE(VValueTrait<T>::setValueFromText(datum, text)) << text;
    return datum;
}

TEST(VValueTraitChar, RefusesAllButOneCharacterAndLeavesTheDatum)
{
    char datum = 'x';
    EXPECT_FALSE(VValueTrait<char>::setValueFromText(datum, "abc"));
    EXPECT_FALSE(VValueTrait<char>::setValueFromText(datum, "ab"));
    EXPECT_FALSE(VValueTrait<char>::setValueFromText(datum, ""));
    EXPECT_EQ(datum, 'x');
    EXPECT_EQ(read<char>("y"), 'y');
    EXPECT_EQ(VValueTrait<char>::Text('y'), "y");
    EXPECT_EQ(VValueTrait<char>::Text('\0'), "");
}

TEST(VValueTraitShort, CutsToSixteenBits)
{
    EXPECT_EQ(read<short>("70000"), 4464);
    EXPECT_EQ(read<short>("-12"), -12);
    EXPECT_EQ(VValueTrait<short>::Text(-12), "-12");
}

TEST(VValueTraitInt, ReadsWhatIsNoNumberAsZero)
{
    EXPECT_EQ(read<int>("abc", 5), 0);
    EXPECT_EQ(read<int>("12abc"), 12);
    EXPECT_EQ(read<int>("", 5), 0);
    EXPECT_EQ(VValueTrait<int>::Text(std::numeric_limits<int>::min()), "-2147483648");
}

TEST(VValueTraitUnsigned, ThrowsForNoNumberAndOutOfRange)
{
    unsigned datum = 7;
    try
    {
        VValueTrait<unsigned>::setValueFromText(datum, "");
        FAIL();
    }
    catch (const std::invalid_argument& error)
    {
        EXPECT_STREQ(error.what(), "stoul");
    }
    try
    {
        VValueTrait<unsigned>::setValueFromText(datum, "99999999999999999999");
        FAIL();
    }
    catch (const std::out_of_range& error)
    {
        EXPECT_STREQ(error.what(), "stoul");
    }
    EXPECT_EQ(datum, 7U);
}

TEST(VValueTraitUnsigned, CutsToThirtyTwoBits)
{
    EXPECT_EQ(read<unsigned>("4294967296"), 0U);
    EXPECT_EQ(read<unsigned>("-1"), 4294967295U);
    EXPECT_EQ(VValueTrait<unsigned>::Text(4294967295U), "4294967295");
}

TEST(VValueTraitLongLong, WritesSixtyFourBitsAndReadsThirtyTwo)
{
    EXPECT_EQ(VValueTrait<long long>::Text(5000000000LL), "5000000000");
    EXPECT_EQ(read<long long>("-2147483648"), -2147483648LL);
    EXPECT_EQ(read<long long>("12"), 12);
    EXPECT_EQ(read<long long>("4294967298"), 2) << "the low bits of what is greater";
}

TEST(VValueTraitFloat, WritesSixDecimals)
{
    EXPECT_EQ(VValueTrait<float>::Text(1.5F), "1.500000");
    EXPECT_EQ(VValueTrait<float>::Text(std::numeric_limits<float>::max()),
              "340282346638528859811704183484516925440.000000");
    EXPECT_EQ(read<float>("0.1"), 0.1F);
}

TEST(VValueTraitDouble, ReadsWhatIsNoNumberAsZero)
{
    EXPECT_EQ(read<double>("abc", 3.0), 0.0);
}

TEST(VValueTraitDouble, WritesAsAStreamOfSeventeenDigitsDoes)
{
    EXPECT_EQ(VValueTrait<double>::Text(0.1), "0.10000000000000001");
    const unsigned seed = 20261120;
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937_64 random(seed);
    for (int i = 0; i < 20000; ++i)
    {
        const std::uint64_t bits = random();
        double number = 0;
        std::memcpy(&number, &bits, sizeof number);
        std::ostringstream stream;
        stream.imbue(std::locale::classic());
        stream.precision(17);
        stream << number;
        EXPECT_EQ(VValueTrait<double>::Text(number), stream.str());
    }
    EXPECT_EQ(VValueTrait<double>::Text(std::numeric_limits<double>::infinity()), "inf");
    EXPECT_EQ(VValueTrait<double>::Text(-0.0), "-0");
}

TEST(VValueTraitString, TurnsVerticalTabsIntoLineFeedsOnReadingOnly)
{
    EXPECT_EQ(read<string>("a\vb"), "a\nb");
    EXPECT_EQ(VValueTrait<string>::Text("a\nb"), "a\nb");
    EXPECT_EQ(VValueTrait<string>::Text("a\vb"), "a\vb");
}

TEST(VValueTraitString, HasItsTwoKeywords)
{
    EXPECT_STREQ(VValueTrait<string>::OneLine(), "oneline");
    EXPECT_STREQ(VValueTrait<string>::MultiLine(), "multiline");
}

TEST(VValueTraitOfNoText, ReadsNothingAndWritesNothing)
{
    VGraph graph;
    EXPECT_FALSE(VValueTrait<VGraph>::setValueFromText(graph, "x"));
    EXPECT_EQ(VValueTrait<VGraph>::Text(graph), "");
    VThreadManager manager;
    EXPECT_FALSE(VValueTrait<VThreadManager>::setValueFromText(manager, "x"));
    EXPECT_EQ(VValueTrait<VThreadManager>::Text(manager), "");
}

} // namespace
} // namespace Quorl
