#include "Hillshade.h"
#include "Earth.h"
#include <plugins/grid/tests/Support.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace Maps
{
namespace
{

/// The closed formula for a plane that rises by `east` and `north` metres a metre.
double shadeOfPlane(double east, double north, const Light& light)
{
    const double p = light.exaggeration * east;
    const double q = light.exaggeration * north;
    const double slope = std::atan(std::hypot(p, q));
    const double downhill = std::atan2(-p, -q); // clockwise from north
    const double shade = std::sin(light.altitude * kRadiansPerDegree) * std::cos(slope) +
                         std::cos(light.altitude * kRadiansPerDegree) * std::sin(slope) *
                             std::cos(light.azimuth * kRadiansPerDegree - downhill);
    return std::max(0.0, shade);
}

/// A plane near the given latitude, a tenth of a degree wide: there the Earth is flat.
Field plane(double latitude, double east, double north)
{
    const double metresPerDegree = kEarthRadiusInMetres * kRadiansPerDegree;
    const Region region{20.0, 20.1, latitude - 0.05, latitude + 0.05};
    return fieldOf(region, 10, 10, [&](double x, double y) {
        return metresPerDegree * (east * (x - 20.0) * std::cos(latitude * kRadiansPerDegree) +
                                  north * (y - latitude));
    });
}

TEST(Hillshade, AgreesWithTheClosedFormulaOnPlanes)
{
    for (const double azimuth : {0.0, 45.0, 135.0, 200.0, 315.0})
        for (const double altitude : {10.0, 45.0, 90.0})
            for (const double latitude : {0.0, 60.0, -75.0})
            {
                const Light light{azimuth, altitude, 3.0};
                const Field shade = hillshade(plane(latitude, 0.2, -0.1), light);
                for (const float value : shade.values.samples())
                    EXPECT_NEAR(value, shadeOfPlane(0.2, -0.1, light), 2e-3);
            }
}

TEST(Hillshade, LightsTheSlopeThatFacesTheLight)
{
    const Field risingEast = plane(0.0, 0.5, 0.0);
    const Field risingNorth = plane(0.0, 0.0, 0.5);

    EXPECT_GT(hillshade(risingEast, {270.0, 30.0, 1.0}).values.at(5, 5),
              hillshade(risingEast, {90.0, 30.0, 1.0}).values.at(5, 5));
    EXPECT_GT(hillshade(risingNorth, {180.0, 30.0, 1.0}).values.at(5, 5),
              hillshade(risingNorth, {0.0, 30.0, 1.0}).values.at(5, 5));
}

TEST(Hillshade, GivesLevelGroundTheSineOfTheAltitude)
{
    const Light light{120.0, 30.0, 20000.0};
    const Field shade = hillshade(fieldOf({}, 36, 18, [](double, double) { return 40.0; }), light);

    EXPECT_NEAR(shadeOfLevelGround(light), 0.5, 1e-12);
    for (const float value : shade.values.samples()) EXPECT_FLOAT_EQ(value, 0.5F);
}

TEST(Hillshade, StaysBetweenNoneAndFull)
{
    const Field rough = fieldOf({}, 72, 36, [](double longitude, double latitude) {
        return 1000.0 * std::sin(longitude) * std::cos(3.0 * latitude);
    });

    const Field shade = hillshade(rough, {315.0, 20.0, 1e6});

    for (const float value : shade.values.samples())
    {
        EXPECT_GE(value, 0.0F);
        EXPECT_LE(value, 1.0F);
    }
}

TEST(Hillshade, LeavesNoSeamWhereLongitudesWrap)
{
    const auto wave = [](double longitude, double) {
        return 1000.0 * std::sin(longitude * kRadiansPerDegree);
    };
    const Light light{300.0, 40.0, 1000.0};
    const Field fromDateLine = hillshade(fieldOf({-180, 180, -10, 10}, 72, 4, wave), light);
    const Field fromGreenwich = hillshade(fieldOf({0, 360, -10, 10}, 72, 4, wave), light);

    for (int column = 0; column < 72; ++column)
        EXPECT_NEAR(fromDateLine.values.at(column, 2),
                    fromGreenwich.values.at((column + 36) % 72, 2), 1e-5);
}

TEST(Hillshade, RefusesABadLight)
{
    constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
    const Field field = fieldOf({}, 8, 4, [](double, double) { return 0.0; });

    EXPECT_EQ(errorOf([&] { hillshade(field, {kNan, 45, 1}); }),
              "the light's azimuth is not finite");
    for (const double bad : {0.0, -1.0, 90.5, kNan})
        EXPECT_EQ(errorOf([&] { hillshade(field, {0, bad, 1}); }),
                  "the light's altitude is not between 0 and 90 degrees");
    for (const double bad : {-1.0, kNan, std::numeric_limits<double>::infinity()})
        EXPECT_EQ(errorOf([&] { hillshade(field, {0, 45, bad}); }),
                  "the exaggeration is not a positive number");
}

} // namespace
} // namespace Maps
