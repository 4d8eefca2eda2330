#include "ContourDrawing.h"
#include <plugins/grid/tests/Support.h>

#include <gtest/gtest.h>

#include <memory>
#include <numeric>
#include <vector>

namespace Maps
{
namespace
{

constexpr LinearRgb kWhite{1.0F, 1.0F, 1.0F};

LinearImage white(int width, int height)
{
    return {width, height, std::vector<LinearRgb>(sampleCount(width, height), kWhite)};
}

/// One line in a picture of 20 x 20 pixels.
ContourSet oneLine(int index, std::vector<Point> points)
{
    return {10.0, 20, 20,
            std::make_shared<const std::vector<Contour>>(
                std::vector<Contour>{{index, false, std::move(points)}})};
}

/// How much light was taken, in pixels.
double ink(const LinearImage& image)
{
    double sum = 0.0;
    for (const LinearRgb& colour : image.samples()) sum += 1.0 - double{colour.green};
    return sum;
}

TEST(ContourDrawing, DarkensThePixelsOfALineAndNoOther)
{
    const LinearImage drawn =
        drawContours(white(20, 20), oneLine(1, {{-1.0F, 10.5F}, {21.0F, 10.5F}}), {});

    for (int x = 0; x < 20; ++x)
    {
        EXPECT_LT(drawn.at(x, 10).green, 0.8F);
        EXPECT_EQ(drawn.at(x, 7), kWhite);
        EXPECT_EQ(drawn.at(x, 13), kWhite);
    }
}

TEST(ContourDrawing, TakesAsMuchInkWhereverALineLies)
{
    const ContourStyle style{{1.0, 0.5}, {1.0, 0.5}, {1.0, 0.5}};
    const double onPixels =
        ink(drawContours(white(20, 20), oneLine(1, {{-2.0F, 10.5F}, {22.0F, 10.5F}}), style));
    const double between =
        ink(drawContours(white(20, 20), oneLine(1, {{-2.0F, 10.0F}, {22.0F, 10.0F}}), style));

    EXPECT_NEAR(onPixels, between, 0.02 * onPixels);
}

TEST(ContourDrawing, DrawsFifthLinesStrongerAndZeroStrongest)
{
    const std::vector<Point> points{{2.0F, 3.0F}, {18.0F, 15.0F}};
    const double plain = ink(drawContours(white(20, 20), oneLine(3, points), {}));
    const double fifth = ink(drawContours(white(20, 20), oneLine(-5, points), {}));
    const double zero = ink(drawContours(white(20, 20), oneLine(0, points), {}));

    EXPECT_GT(fifth, 1.5 * plain);
    EXPECT_GT(zero, 1.5 * fifth);
}

TEST(ContourDrawing, LeavesNoDotsWhereSegmentsMeet)
{
    const LinearImage inOne =
        drawContours(white(20, 20), oneLine(1, {{2.0F, 10.0F}, {18.0F, 10.0F}}), {});
    const LinearImage inTwo =
        drawContours(white(20, 20), oneLine(1, {{2.0F, 10.0F}, {9.0F, 10.0F}, {18.0F, 10.0F}}), {});

    EXPECT_EQ(inOne, inTwo);
}

TEST(ContourDrawing, RefusesContoursOfAnotherSize)
{
    EXPECT_EQ(errorOf([] { drawContours(white(20, 19), oneLine(0, {}), {}); }),
              "the contours are not of the picture's size");
}

} // namespace
} // namespace Maps
