#include "Legend.h"
#include <plugins/grid/tests/Support.h>

#include <gtest/gtest.h>

#include <vector>

namespace Maps
{
namespace
{

constexpr Rgb kMapColour{200, 40, 120};

Image plainMap(int width, int height)
{
    return {width, height, std::vector<Rgb>(sampleCount(width, height), kMapColour)};
}

struct Found
{
    int left = -1;
    int top = -1;
    int pixels = 0;
};

Found findMap(const Image& picture)
{
    Found found;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
        {
            if (picture.at(x, y) != kMapColour) continue;
            if (found.pixels++ == 0) found = {x, y, 1};
        }
    return found;
}

TEST(Legend, KeepsTheMapPixelForPixel)
{
    const Image picture =
        frameMap(plainMap(400, 200), {}, ColourMap(-110, 90), {"Geoid", "every 10 m"});

    EXPECT_EQ(findMap(picture).pixels, 400 * 200);
}

TEST(Legend, StandsOutsideTheMap)
{
    const Image picture =
        frameMap(plainMap(400, 200), {}, ColourMap(-110, 90), {"Geoid", "every 10 m"});
    const Found map = findMap(picture);

    EXPECT_GT(map.left, 20);                                    // latitudes
    EXPECT_GT(map.top, 20);                                     // caption
    EXPECT_GT(picture.width(), map.left + 400 + 40);            // colour bar
    EXPECT_GT(picture.height(), map.top + 200 + 15);            // longitudes
    EXPECT_EQ(picture.at(map.left - 1, map.top + 100).red, 28); // frame
}

TEST(Legend, ShowsTheColoursOfTheMapFromHighToLow)
{
    const ColourMap colours(-110, 90);
    const Image picture = frameMap(plainMap(400, 200), {}, colours, {});
    const Found map = findMap(picture);

    const auto isInColumn = [&](int y, const Rgb& wanted) {
        for (int x = map.left + 400; x < picture.width(); ++x)
            if (picture.at(x, y) == wanted) return true;
        return false;
    };
    EXPECT_TRUE(isInColumn(map.top, encode(colours.at(89.5))));
    EXPECT_TRUE(isInColumn(map.top + 199, encode(colours.at(-109.5))));
}

TEST(Legend, TakesNoRoomForAMissingSubtitle)
{
    const Image with = frameMap(plainMap(400, 200), {}, ColourMap(), {"Geoid", "every 10 m"});
    const Image without = frameMap(plainMap(400, 200), {}, ColourMap(), {"Geoid", ""});

    EXPECT_LT(without.height(), with.height());
}

TEST(Legend, FitsALongTitleIntoThePicture)
{
    const std::string title(300, 'W');
    const Image picture = frameMap(plainMap(400, 200), {}, ColourMap(), {title, ""});
    const Found map = findMap(picture);

    for (int y = 0; y < map.top - 8; ++y)
        for (int x = map.left + 402; x < map.left + 420; ++x)
            EXPECT_EQ(picture.at(x, y), (Rgb{255, 255, 255})) << x << " " << y;
}

TEST(Legend, CanFrameTheSmallestMap)
{
    EXPECT_NO_THROW(frameMap(plainMap(2, 2), {}, ColourMap(), {"Geoid", "every 10 m"}));
}

TEST(Legend, RefusesNoMapAndABadRegion)
{
    EXPECT_EQ(errorOf([] { frameMap({}, {}, ColourMap(), {}); }), "there is no map to frame");
    EXPECT_EQ(errorOf([] { frameMap(plainMap(8, 8), {0, 10, 5, 5}, ColourMap(), {}); }),
              "the region's north is not north of its south");
}

} // namespace
} // namespace Maps
