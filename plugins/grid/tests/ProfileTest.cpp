#include "Profile.h"
#include "Earth.h"
#include <plugins/grid/tests/Support.h>

#include <gtest/gtest.h>

#include <cmath>

namespace Maps
{
namespace
{

/// Smooth all over the Earth: the height of a place over the plane of a meridian.
double wave(double longitude, double latitude)
{
    return 100.0 * std::cos(latitude * kRadiansPerDegree) * std::cos(longitude * kRadiansPerDegree);
}

TEST(Profile, FollowsAnAnalyticFieldAlongTheGreatCircle)
{
    const Field field = fieldOf({}, 720, 360, wave);
    const Place from{-30, 150};
    const Place to{50, -100}; // over the date line

    const Profile profile = sampleProfile(field, from, to, 101);

    const GreatCircle way(from, to);
    EXPECT_EQ(profile.length, way.length());
    ASSERT_EQ(profile.values.width(), 101);
    for (int i = 0; i <= 100; ++i)
    {
        const Place place = way.at(i / 100.0);
        EXPECT_NEAR(profile.values.at(i, 0), wave(place.longitude, place.latitude), 0.02);
    }
}

TEST(Profile, IsExactBetweenPixelsOfALinearField)
{
    const auto plane = [](double longitude, double latitude) { return 2 * longitude - latitude; };
    const Field field = fieldOf({10, 30, -10, 10}, 20, 20, plane);

    for (const Place& place : {Place{0.0, 20.0}, Place{-3.25, 12.75}, Place{9.4, 29.4}})
        EXPECT_NEAR(valueAt(field, place), plane(place.longitude, place.latitude), 1e-4);
}

TEST(Profile, HasTheValueOfTheEdgeWithinHalfAPixelOfIt)
{
    const Field field =
        fieldOf({10, 30, -10, 10}, 20, 20, [](double longitude, double) { return longitude; });

    EXPECT_NEAR(valueAt(field, {10.0, 10.0}), 10.5, 1e-4);
    EXPECT_NEAR(valueAt(field, {-10.0, 30.0}), 29.5, 1e-4);
    EXPECT_NEAR(valueAt(field, {0.0, 30.0 - 360.0}), 29.5, 1e-4);
}

TEST(Profile, LeavesNoSeamWhereLongitudesWrap)
{
    const Field field = fieldOf({}, 36, 18, wave);

    EXPECT_NEAR(valueAt(field, {5.0, 180.0}),
                0.5 * (field.values.at(0, 8) + field.values.at(35, 8)), 1e-4);
    EXPECT_EQ(valueAt(field, {5.0, 180.0}), valueAt(field, {5.0, -180.0}));
}

TEST(Profile, RefusesToLeaveTheRegion)
{
    const Field field = fieldOf({10, 30, -10, 10}, 20, 20, wave);

    EXPECT_EQ(errorOf([&] { sampleProfile(field, {0, 15}, {0, 31}, 17); }),
              "0 degrees north, 31 degrees east is not in the region");
    EXPECT_EQ(errorOf([&] { valueAt(Field(), {0, 0}); }), "there is no field");
}

TEST(Profile, RefusesTooFewAndTooManySamples)
{
    const Field field = fieldOf({}, 8, 8, wave);

    for (const int bad : {-1, 1, kMostProfileSamples + 1})
        EXPECT_EQ(errorOf([&] { sampleProfile(field, {0, 0}, {0, 10}, bad); }),
                  "the number of samples of a profile is not between 2 and 100000");
}

} // namespace
} // namespace Maps
