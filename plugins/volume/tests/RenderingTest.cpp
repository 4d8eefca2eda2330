#include "Rendering.h"
#include "Fragments.h"
#include "Hollows.h"
#include "Isosurface.h"
#include <plugins/volume/tests/Support.h>

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

namespace Volumes
{
namespace
{

using Maps::LinearImage;

constexpr double kRadius = 8.0;
constexpr Look kLook{{0.5F, 0.5F, 0.5F}, {0.0F, 0.0F, 1.0F}, 120, 100};
constexpr Lamp kMattLamp{
    .azimuth = 0.0, .elevation = 0.0, .ambient = 0.0, .gloss = 0.0, .occlusion = 0.0};

Mesh ball()
{
    const Counts counts{21, 21, 21};
    return isosurface(volumeOf(counts, centred(counts, 1.0), ballAround({})), -kRadius);
}

bool isBackground(const Maps::LinearRgb& pixel)
{
    return pixel == kLook.background;
}

TEST(Rendering, ShowsABallRoundAndInTheMiddle)
{
    const LinearImage picture = render(ball(), {.fieldOfView = 0.0}, kMattLamp, kLook);

    ASSERT_EQ(picture.width(), 120);
    ASSERT_EQ(picture.height(), 100);
    int covered = 0;
    double x = 0.0;
    double y = 0.0;
    for (int row = 0; row < 100; ++row)
        for (int column = 0; column < 120; ++column)
            if (!isBackground(picture.at(column, row)))
            {
                ++covered;
                x += column + 0.5;
                y += row + 0.5;
            }
    EXPECT_NEAR(covered, std::numbers::pi * 46.0 * 46.0, 0.04 * covered);
    EXPECT_NEAR(x / covered, 60.0, 0.1);
    EXPECT_NEAR(y / covered, 50.0, 0.1);
}

TEST(Rendering, IsBrightestWhereTheSurfaceFacesTheLamp)
{
    const Lamp lamp{
        .azimuth = -45.0, .elevation = 0.0, .ambient = 0.0, .gloss = 0.0, .occlusion = 0.0};
    const LinearImage picture = render(ball(), {.fieldOfView = 0.0}, lamp, kLook);

    // At a distance d from the middle of a ball of 46 pixels, the normal leans by asin(d / 46).
    const auto expected = [](double offset) {
        const double lean = std::asin(offset / 46.0);
        return 0.5 * std::max(0.0, std::cos(lean + std::numbers::pi / 4.0));
    };
    for (const int offset : {-40, -32, -20, 0, 20})
        EXPECT_NEAR(picture.at(60 + offset, 50).red, expected(offset + 0.5), 0.02) << offset;
}

TEST(Rendering, SmoothsTheEdgeOfTheSurface)
{
    const LinearImage picture = render(ball(), {}, kMattLamp, kLook);

    int mixed = 0;
    for (const Maps::LinearRgb& pixel : picture.samples())
        if (pixel.blue > 0.55F && pixel.blue < 0.95F) ++mixed;
    EXPECT_GT(mixed, 50);
}

TEST(Rendering, DarkensHollows)
{
    const Counts counts{31, 31, 31};
    // A ball with a deep, narrow pit towards the camera.
    const Mesh pitted = isosurface(volumeOf(counts, centred(counts, 1.0),
                                            [](const Vector& place) {
                                                const double pit =
                                                    std::hypot(place.x, place.z) - 2.0;
                                                const double ball = 12.0 - length(place);
                                                return place.y > 5.0 ? std::min(ball, pit) : ball;
                                            }),
                                   0.0);
    Lamp lamp = kMattLamp;
    const double open = render(pitted, {}, lamp, kLook).at(60, 50).red;
    lamp.occlusion = 1.0;
    const double dark = render(pitted, {}, lamp, kLook).at(60, 50).red;

    EXPECT_GT(open, 0.3);
    EXPECT_LT(dark, 0.5 * open);
}

TEST(Rendering, OfNothingIsTheBackground)
{
    const LinearImage picture = render(Mesh(), {}, {}, kLook);

    for (const Maps::LinearRgb& pixel : picture.samples()) EXPECT_EQ(pixel, kLook.background);
}

TEST(Rendering, RefusesLampsAndSizesBeyondTheirRanges)
{
    Look small = kLook;
    small.width = 15;
    Look large = kLook;
    large.height = kMostPixelsASide + 1;

    for (const Look& look : {small, large})
        EXPECT_EQ(errorOf([&] { render(ball(), {}, {}, look); }),
                  "a side of the picture is not between 16 and 4096 pixels");
    EXPECT_EQ(errorOf([&] { render(ball(), {}, {.gloss = 1.5}, kLook); }),
              "the gloss is not between 0 and 1");
    EXPECT_EQ(errorOf([&] { render(ball(), {}, {.elevation = std::nan("")}, kLook); }),
              "the lamp's elevation is not between -90 and 90 degrees");
}

TEST(Fragments, ShowWhatIsNearest)
{
    // Three squares across the line of sight, 5 mm behind the middle, and 1 mm and 5 mm before it.
    Triangles squares;
    for (const float y : {-5.0F, 1.0F, 5.0F})
        for (const auto& [x, z] : {std::pair(-1.0F, -1.0F), std::pair(1.0F, -1.0F),
                                   std::pair(1.0F, 1.0F), std::pair(-1.0F, 1.0F)})
            squares.vertices.push_back({{x, y, z}, {0.0F, -1.0F, 0.0F}});
    for (const std::uint32_t first : {8U, 0U, 4U})
    {
        squares.triangles.push_back({first, first + 1, first + 2});
        squares.triangles.push_back({first, first + 2, first + 3});
    }
    const Mesh mesh(std::move(squares));
    for (const double fieldOfView : {0.0, 30.0})
    {
        const Projection projection(mesh, {.fieldOfView = fieldOfView}, 40, 40);
        const Fragments fragments = rasterise(mesh, projection, 40, 40);
        const std::size_t middle = 20U * 40U + 20U;

        EXPECT_NEAR(fragments.depths[middle], 5.0, 1e-4);
        EXPECT_GT(fragments.normals[middle][1], 0.0F) << "turned to the camera";
        EXPECT_FALSE(fragments.isCovered(0));
    }
}

TEST(Hollows, AreNowhereOnAPlaneAndDeepInAPit)
{
    Fragments fragments{64, 64, std::vector<float>(64 * 64, 3.0F), {}, 4.0};
    for (const float hollow : hollows(fragments, 2.0)) EXPECT_NEAR(hollow, 0.0, 1e-4);

    fragments.depths[32 * 64 + 32] = -7.0F;
    EXPECT_NEAR(hollows(fragments, 2.0)[32 * 64 + 32], 10.0, 0.1);
}

} // namespace
} // namespace Volumes
