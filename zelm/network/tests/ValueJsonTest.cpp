#include <zelm/network/ValueJson.h>

#include "Complaint.h"
#include "TestObjects.h"
#include <quorl/values/VValue.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <string>

namespace Zelm
{
namespace
{

using Quorl::VValue;

template <class T>
std::string jsonTextOf(const T& datum)
{
    const VValue<T> value(datum);
    const std::optional<Json> json = jsonOf(value);
    return json ? json->dump() : "nothing";
}

/// What stands in a value that is given a JSON text.
template <class T>
T given(const std::string& json)
{
    VValue<T> value;
    setFromJson(value, Json::parse(json));
    T datum{};
    value.getValue(datum);
    return datum;
}

template <class T>
std::string complaint(const std::string& json)
{
    VValue<T> value;
    return complaintOf([&] { setFromJson(value, Json::parse(json)); });
}

TEST(ValueJson, TellsNumbersToTheLastBit)
{
    for (const double number : {0.1, -0.0, 1e300, 5e-324, std::nextafter(1.0, 2.0), 1.0 / 3.0})
        EXPECT_EQ(given<double>(jsonTextOf(number)), number);
    for (const float number : {0.1F, 16777216.0F, 1e-45F, 3.4028235e38F, 1.0F / 3.0F})
        EXPECT_EQ(given<float>(jsonTextOf(number)), number);
    EXPECT_EQ(jsonTextOf(0.1F), "0.1");
    EXPECT_TRUE(std::signbit(given<double>(jsonTextOf(-0.0))));
}

TEST(ValueJson, TellsNumbersThatAreNotFiniteAsTexts)
{
    EXPECT_EQ(jsonTextOf(std::numeric_limits<double>::infinity()), "\"inf\"");
    EXPECT_EQ(jsonTextOf(-std::numeric_limits<float>::infinity()), "\"-inf\"");
    EXPECT_EQ(jsonTextOf(std::nan("")), "\"nan\"");
    EXPECT_EQ(given<double>("\"-inf\""), -std::numeric_limits<double>::infinity());
    EXPECT_TRUE(std::isnan(given<float>("\"nan\"")));
}

TEST(ValueJson, TellsWholeNumbersOfAllWidths)
{
    EXPECT_EQ(jsonTextOf(std::numeric_limits<long long>::min()), "-9223372036854775808");
    EXPECT_EQ(given<long long>("9223372036854775807"), std::numeric_limits<long long>::max());
    EXPECT_EQ(given<unsigned int>("4294967295"), 4294967295U);
    EXPECT_EQ(given<short>("-32768"), -32768);
    EXPECT_EQ(given<int>("1e3"), 1000);
}

TEST(ValueJson, RefusesNumbersThatDoNotFit)
{
    EXPECT_EQ(complaint<int>("1.5"),
              "a whole number from -2147483648 to 2147483647 is expected here, not 1.5");
    EXPECT_NE(complaint<int>("2147483648"), "");
    EXPECT_NE(complaint<short>("-32769"), "");
    EXPECT_NE(complaint<unsigned int>("-1"), "");
    EXPECT_NE(complaint<long long>("9223372036854775808"), "");
    EXPECT_NE(complaint<long long>("9.3e18"), "");
    EXPECT_NE(complaint<float>("1e39"), "");
    EXPECT_NE(complaint<double>("\"much\""), "");
    EXPECT_NE(complaint<double>("true"), "");
    EXPECT_NE(complaint<int>("\"inf\""), "");
}

TEST(ValueJson, TellsTruthsAndTexts)
{
    EXPECT_EQ(jsonTextOf(true), "true");
    EXPECT_EQ(jsonTextOf(std::string("a\v\n\"")), R"("a\u000b\n\"")");
    EXPECT_EQ(given<std::string>(R"("a\u000b")"), "a\v") << "no text form stands between";
    EXPECT_NE(complaint<bool>("1"), "");
    EXPECT_NE(complaint<std::string>("1"), "");
    EXPECT_NE(complaintOf([] { jsonTextOf(std::string("\xff")); }), "");
}

TEST(ValueJson, TellsOtherTypesByTypeAndText)
{
    EXPECT_EQ(jsonTextOf(Colour{1, 2, 3}), R"({"type":"Zelm::Colour","text":"1 2 3"})");
    EXPECT_EQ(given<Colour>(R"({"type": "Zelm::Colour", "text": "4 5 6"})").blue, 6);
    EXPECT_EQ(given<Colour>(R"("7 8 9")").red, 7);
    EXPECT_EQ(jsonTextOf('x'), R"({"type":"char","text":"x"})");
    EXPECT_EQ(complaint<Colour>(R"("red")"), "\"red\" is no Zelm::Colour");
    EXPECT_EQ(complaint<Colour>(R"({"type": "char", "text": "x"})"),
              "a Zelm::Colour is expected here, not a char");
    EXPECT_NE(complaint<Colour>("5"), "");
}

TEST(ValueJson, TellsNothingOfATypeWithoutATextForm)
{
    EXPECT_EQ(jsonTextOf(Opaque()), "nothing");
}

TEST(ValueJson, TakesWhatSomebodyTypesAndRefusesWhatIsNoNumber)
{
    VValue<int> number;
    VValue<std::string> text;
    setFromText(number, "12");
    setFromText(text, "12");

    EXPECT_EQ(number.Text(), "12");
    EXPECT_EQ(text.Text(), "12");
    EXPECT_NE(complaintOf([&] { setFromText(number, "a dozen"); }), "");
    EXPECT_NE(complaintOf([&] { setFromText(number, "12 apples"); }), "");
    EXPECT_EQ(number.Text(), "12");
}

TEST(ValueJson, MakesValuesOfTypesByName)
{
    EXPECT_EQ(valueFromJson("double", 0.5)->Text(), "0.5");
    EXPECT_EQ(valueFromJson("unsigned int", 3)->Text(), "3");
    EXPECT_EQ(valueFromJson("string", "a b")->Text(), VValue<std::string>("a b").Text());
    EXPECT_EQ(complaintOf([] { valueFromJson("Nothing", 0.5); }), "there is no type \"Nothing\"");
}

} // namespace
} // namespace Zelm
