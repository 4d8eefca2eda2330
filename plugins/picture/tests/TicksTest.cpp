#include "Ticks.h"

#include <gtest/gtest.h>

namespace Maps
{
namespace
{

using Values = std::vector<double>;

TEST(Ticks, AreMultiplesOfOneTwoOrFive)
{
    EXPECT_EQ(decimalTicks(-110, 90, 11).values,
              (Values{-100, -80, -60, -40, -20, 0, 20, 40, 60, 80}));
    EXPECT_EQ(decimalTicks(-110, 90, 8).step, 50.0);
    EXPECT_EQ(decimalTicks(-110, 90, 3).step, 100.0);
    EXPECT_DOUBLE_EQ(decimalTicks(0, 1, 6).step, 0.2);
}

TEST(Ticks, IncludeBothBounds)
{
    EXPECT_EQ(decimalTicks(-20, 30, 5).values, (Values{-20, -10, 0, 10, 20, 30}));
}

TEST(Ticks, OfDegreesDivideACircle)
{
    EXPECT_EQ(degreeTicks(-180, 180, 14).step, 30.0);
    EXPECT_EQ(degreeTicks(-90, 90, 5).step, 45.0);
    EXPECT_EQ(degreeTicks(-180, 180, 1).step, 180.0);
    EXPECT_EQ(degreeTicks(50, 100, 10).step, 5.0);
    EXPECT_EQ(degreeTicks(160, 200, 4).values, (Values{160, 170, 180, 190, 200}));
}

TEST(Ticks, LabelLatitudes)
{
    EXPECT_EQ(latitudeLabel(30, 10), "30°N");
    EXPECT_EQ(latitudeLabel(-20, 10), "20°S");
    EXPECT_EQ(latitudeLabel(-1e-15, 10), "0°");
    EXPECT_EQ(latitudeLabel(12.5, 0.5), "12.5°N");
}

TEST(Ticks, LabelLongitudes)
{
    EXPECT_EQ(longitudeLabel(50, 10), "50°E");
    EXPECT_EQ(longitudeLabel(-120, 30), "120°W");
    EXPECT_EQ(longitudeLabel(190, 10), "170°W");
    EXPECT_EQ(longitudeLabel(-180, 30), "180°");
    EXPECT_EQ(longitudeLabel(180, 30), "180°");
    EXPECT_EQ(longitudeLabel(360, 30), "0°");
}

TEST(Ticks, LabelNumbersWithATrueMinusSign)
{
    EXPECT_EQ(numberLabel(-100, 20), "−100");
    EXPECT_EQ(numberLabel(-1e-12, 20), "0");
    EXPECT_EQ(numberLabel(0.25, 0.05), "0.25");
}

} // namespace
} // namespace Maps
