#include "Camera.h"
#include <plugins/volume/tests/Support.h>

#include <gtest/gtest.h>

#include <cmath>

namespace Volumes
{
namespace
{

void expectNear(const Vector& left, const Vector& right)
{
    EXPECT_LT(length(left - right), 1e-12);
}

Mesh cornersOfABox(const Vector& half)
{
    Triangles surface;
    for (const double x : {-half.x, half.x})
        for (const double y : {-half.y, half.y})
            for (const double z : {-half.z, half.z})
                surface.vertices.push_back({numbersOf({x, y, z}), {}});
    surface.triangles.push_back({0, 1, 2});
    return Mesh(std::move(surface));
}

TEST(Camera, FacesThePersonWhoseRightSideIsAtItsLeft)
{
    const View view = viewOf({});

    expectNear(view.back, {0, 1, 0});
    expectNear(view.right, {-1, 0, 0});
    expectNear(view.up, {0, 0, 1});
}

TEST(Camera, GoesRoundByTheLeftSideOfThePerson)
{
    const View view = viewOf({.azimuth = 90.0});

    expectNear(view.back, {-1, 0, 0});
    expectNear(view.right, {0, -1, 0}); // so the face is at the left of the picture
    expectNear(view.up, {0, 0, 1});
}

TEST(Camera, HasADirectionUpwardsAlsoFromAbove)
{
    const View view = viewOf({.azimuth = 180.0, .elevation = 90.0});

    expectNear(view.back, {0, 0, 1});
    expectNear(view.right, {1, 0, 0});
    expectNear(view.up, {0, 1, 0}); // from behind, the face is at the top
}

TEST(Camera, RolledClockwiseSeesThingsTurnedAnticlockwise)
{
    const View view = viewOf({.azimuth = 180.0, .roll = 90.0});

    expectNear(view.right, {0, 0, -1});
    expectNear(view.up, {1, 0, 0});
}

TEST(Camera, IsRightHandedFromWherever)
{
    for (const double azimuth : {-300.0, -10.0, 45.0, 200.0})
        for (const double elevation : {-90.0, -20.0, 60.0})
        {
            const View view = viewOf({.azimuth = azimuth, .elevation = elevation, .roll = 33.0});
            expectNear(cross(view.right, view.up), view.back);
            EXPECT_NEAR(length(view.right), 1.0, 1e-12);
        }
}

TEST(Camera, HasTheSurfaceFillThePictureInProportion)
{
    const Mesh box = cornersOfABox({40.0, 10.0, 20.0});
    const Projection projection(box, {.fieldOfView = 0.0}, 1000, 1000);

    const Projected leftTop = projection.place({40.0, 10.0, 20.0});
    const Projected rightBottom = projection.place({-40.0, 10.0, -20.0});

    EXPECT_NEAR(leftTop.x, 40.0, 1e-6);
    EXPECT_NEAR(rightBottom.x, 960.0, 1e-6);
    EXPECT_NEAR(rightBottom.y - leftTop.y, 460.0, 1e-6);
    EXPECT_NEAR(projection.pixelsPerMillimetre(), 11.5, 1e-6);
}

TEST(Camera, SeesWhatIsNearerLarger)
{
    const Mesh box = cornersOfABox({10.0, 10.0, 10.0});
    const Projection projection(box, {.fieldOfView = 40.0}, 500, 500);
    const auto width = [&](double y) {
        return projection.place({-10.0, y, 0.0}).x - projection.place({10.0, y, 0.0}).x;
    };

    // The camera stands radius / sin(20 degrees) away.
    const double distance = std::sqrt(300.0) / std::sin(20.0 * 3.14159265358979 / 180.0);
    EXPECT_NEAR(width(10.0) / width(-10.0), (distance + 10.0) / (distance - 10.0), 1e-9);
    EXPECT_GT(projection.place({0, 10, 0}).nearness, projection.place({0, -10, 0}).nearness);
    EXPECT_NEAR(projection.depth(projection.place({3, 7, -2}).nearness), 7.0, 1e-9);
}

TEST(Camera, RefusesAnglesAndZoomsBeyondTheirRanges)
{
    EXPECT_EQ(errorOf([] { checkCamera({}); }), "");
    EXPECT_EQ(errorOf([] { checkCamera({.azimuth = 361.0}); }),
              "the camera's azimuth is not between -360 and 360 degrees");
    EXPECT_EQ(errorOf([] { checkCamera({.elevation = 90.5}); }),
              "the camera's elevation is not between -90 and 90 degrees");
    EXPECT_EQ(errorOf([] { checkCamera({.roll = std::nan("")}); }),
              "the camera's roll is not between -360 and 360 degrees");
    EXPECT_EQ(errorOf([] { checkCamera({.fieldOfView = 91.0}); }),
              "the field of view is not between 0 and 90 degrees");
    EXPECT_EQ(errorOf([] { checkCamera({.zoom = 0.0}); }), "the zoom is not between 0.1 and 20");
}

} // namespace
} // namespace Volumes
