#include <quorl/kit/ValueTraits.h>
#include <quorl/slots/VValueParameter.h>
#include <tests/support/Node.h>

#include <gtest/gtest.h>

#include <limits>

namespace Quorl
{
namespace
{

template <class T>
struct Reading
{
    bool isTaken;
    T datum;
    bool operator==(const Reading&) const = default;
};

template <class T>
Reading<T> read(const string& text, T before)
{
    const bool isTaken = VValueTrait<T>::setValueFromText(before, text);
    return {isTaken, before};
}

TEST(BoolTrait, ReadsWordsAndDigits)
{
    EXPECT_EQ(read("true", false), (Reading<bool>{true, true}));
    EXPECT_EQ(read("1", false), (Reading<bool>{true, true}));
    EXPECT_EQ(read("false", true), (Reading<bool>{true, false}));
    EXPECT_EQ(read("0", true), (Reading<bool>{true, false}));
}

TEST(BoolTrait, RefusesAnythingElseAndKeepsItsDatum)
{
    for (const char* text : {"", " true", "TRUE", "yes", "2", "true "})
    {
        EXPECT_EQ(read(text, true), (Reading<bool>{false, true})) << text;
        EXPECT_EQ(read(text, false), (Reading<bool>{false, false})) << text;
    }
}

TEST(BoolTrait, WritesWords)
{
    EXPECT_EQ(VValueTrait<bool>::Text(true), "true");
    EXPECT_EQ(VValueTrait<bool>::Text(false), "false");
}

TEST(LongTrait, GivesEveryNumberBack)
{
    for (const long number : {0L, 1L, -1L, 5000000000L, std::numeric_limits<long>::max(),
                              std::numeric_limits<long>::min()})
        EXPECT_EQ(read(VValueTrait<long>::Text(number), 7L), (Reading<long>{true, number}));
}

TEST(LongTrait, RefusesWhatIsNoWholeNumber)
{
    for (const char* text : {"", "+1", " 1", "1 ", "1.5", "0x10", "9223372036854775808", "ten"})
        EXPECT_EQ(read(text, 7L), (Reading<long>{false, 7L})) << text;
}

TEST(GenericParameter, HoldsABool)
{
    const RefPtr<VParameter> parameter(
        new VValueParameter<bool>(RefPtr<VValue<bool>>(new VValue<bool>(true)), "flag"));
    const RefPtr<ValuePool> pool = QuorlTest::makePool();
    parameter->Localize();

    EXPECT_TRUE(parameter->setValueFromText("false", pool, "", true, {}, nullptr, nullptr));
    EXPECT_EQ(parameter->getValueAsText(pool, "", false), "false");
    EXPECT_EQ(parameter->DefaultValue()->Text(), "true");
    EXPECT_FALSE(parameter->setValueFromText("maybe", pool, "", true, {}, nullptr, nullptr));
    EXPECT_EQ(parameter->getValueAsText(pool, "", false), "false");
    EXPECT_EQ(parameter->copy()->getValueAsText(pool, "", false), "false");
    EXPECT_EQ(parameter->DefaultValue()->getChunk(3)->elements(), 3U);
}

} // namespace
} // namespace Quorl
