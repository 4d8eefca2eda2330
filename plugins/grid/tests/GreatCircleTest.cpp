#include "GreatCircle.h"
#include "Earth.h"
#include <plugins/grid/tests/Support.h>

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

namespace Maps
{
namespace
{

TEST(GreatCircle, IsAsLongAsGeometryTells)
{
    const double quarter = 0.5 * std::numbers::pi * kEarthRadiusInMetres;

    EXPECT_NEAR(GreatCircle({0, 0}, {0, 90}).length(), quarter, 1e-3);
    EXPECT_NEAR(GreatCircle({0, 17}, {90, -120}).length(), quarter, 1e-3);
    EXPECT_NEAR(GreatCircle({60, 0}, {60, 180}).length(),
                60.0 * kRadiansPerDegree * kEarthRadiusInMetres, 1e-3);
    // A minute of arc is a nautical mile, but for the radius.
    EXPECT_NEAR(GreatCircle({10, 20}, {10 + 1.0 / 60.0, 20}).length(), 1853.2, 0.1);
    // Berlin to Tokyo.
    EXPECT_NEAR(GreatCircle({52.5, 13.4}, {35.7, 139.767}).length(), 8918e3, 15e3);
}

TEST(GreatCircle, IsWalkedAtConstantSpeed)
{
    const Place from{52.5, 13.4};
    const GreatCircle way(from, {-33.9, 151.2});

    for (const double part : {0.1, 0.5, 0.9})
        EXPECT_NEAR(GreatCircle(from, way.at(part)).length() / way.length(), part, 1e-9);
    EXPECT_NEAR(way.at(0.0).latitude, 52.5, 1e-9);
    EXPECT_NEAR(way.at(1.0).longitude, 151.2, 1e-9);
}

TEST(GreatCircle, GoesOverThePoleAndOverTheDateLine)
{
    EXPECT_NEAR(GreatCircle({60, 0}, {60, 180}).at(0.5).latitude, 90.0, 1e-6);
    EXPECT_NEAR(std::abs(GreatCircle({0, 170}, {0, -170}).at(0.5).longitude), 180.0, 1e-9);
    // Away from the equator it bends to the pole.
    EXPECT_GT(GreatCircle({50, 0}, {50, 80}).at(0.5).latitude, 55.0);
}

TEST(GreatCircle, RefusesEndsThatHaveNoShortestWay)
{
    for (const auto& [from, to] :
         {std::pair(Place{10, 20}, Place{10, 20}), std::pair(Place{10, 20}, Place{-10, -160}),
          std::pair(Place{90, 0}, Place{90, 50}), std::pair(Place{0, -180}, Place{0, 180})})
        EXPECT_EQ(errorOf([&] { GreatCircle(from, to); }),
                  "the ends of the great circle are the same, or opposite each other");
    for (const Place& bad : {Place{91, 0}, Place{0, 361}, Place{std::nan(""), 0}})
        EXPECT_EQ(errorOf([&] { GreatCircle({0, 0}, bad); }),
                  "an end of the great circle is not on the Earth");
}

} // namespace
} // namespace Maps
