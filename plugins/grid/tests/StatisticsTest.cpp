#include "Statistics.h"
#include "Earth.h"
#include <plugins/grid/tests/Support.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace Maps
{
namespace
{

double sineOfLatitude(double /*longitude*/, double latitude)
{
    return std::sin(latitude * kRadiansPerDegree);
}

TEST(Statistics, WeighsPixelsByTheirAreaOnTheEarth)
{
    // Over a sphere the sine of the latitude has the mean 0 and the mean square 1/3.
    const Statistics found = statistics(fieldOf({}, 90, 720, sineOfLatitude));

    EXPECT_NEAR(found.mean, 0.0, 1e-7);
    EXPECT_NEAR(found.deviation, std::sqrt(1.0 / 3.0), 1e-5);
    EXPECT_NEAR(found.least, -1.0, 1e-4);
    EXPECT_NEAR(found.greatest, 1.0, 1e-4);
    EXPECT_EQ(found.missing, 0.0);
}

TEST(Statistics, OfTheNorthernHalfIsItsOwn)
{
    const Statistics found = statistics(fieldOf({-180, 180, 0, 90}, 4, 720, sineOfLatitude));

    EXPECT_NEAR(found.mean, 0.5, 1e-5);
    EXPECT_NEAR(found.deviation, std::sqrt(1.0 / 12.0), 1e-5);
}

TEST(Statistics, TellsWhatShareOfTheAreaIsMissing)
{
    const float none = std::numeric_limits<float>::quiet_NaN();
    // North of 30 degrees lies a quarter of the sphere.
    const Field field = fieldOf(
        {}, 12, 18, [&](double, double latitude) { return latitude > 30.0 ? double{none} : 4.0; });

    const Statistics found = statistics(field);

    EXPECT_NEAR(found.missing, 0.25, 1e-9);
    EXPECT_EQ(found.mean, 4.0);
    EXPECT_EQ(found.deviation, 0.0);
}

TEST(Statistics, KeepsASmallDeviationFromAGreatMean)
{
    const Field field = fieldOf({0, 10, -5, 5}, 1000, 2, [](double longitude, double) {
        return 8388608.0 + (longitude < 5.0 ? -1.0 : 1.0);
    });

    // Squares of the values would be rounded by more than 1e-2.
    EXPECT_NEAR(statistics(field).mean, 8388608.0, 1e-6);
    EXPECT_NEAR(statistics(field).deviation, 1.0, 1e-5);
}

TEST(Statistics, HasNoNumbersWhereAllIsMissing)
{
    const Statistics found = statistics(
        fieldOf({}, 4, 4, [](double, double) { return std::numeric_limits<double>::infinity(); }));

    EXPECT_EQ(found.missing, 1.0);
    EXPECT_TRUE(std::isnan(found.mean));
    EXPECT_TRUE(std::isnan(found.least));
    EXPECT_EQ(errorOf([] { statistics(Field()); }), "there is no field");
}

} // namespace
} // namespace Maps
