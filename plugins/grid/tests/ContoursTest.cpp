#include "Contours.h"
#include <plugins/grid/tests/Support.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace Maps
{
namespace
{

/// A field of which the values are given by pixel, in a region that does not wrap.
Field patch(int width, int height, std::vector<float> values)
{
    return {{0.0, 10.0, 0.0, 10.0}, Raster<float>(width, height, std::move(values))};
}

/// Heights that fall by one metre a pixel from the middle of a picture of 101 x 101 pixels.
Field cone()
{
    std::vector<float> heights;
    for (int y = 0; y < 101; ++y)
        for (int x = 0; x < 101; ++x)
            heights.push_back(static_cast<float>(59.5 - std::hypot(x - 50, y - 50)));
    return patch(101, 101, std::move(heights));
}

TEST(Contours, OfAConeAreCircles)
{
    const ContourSet contours = traceContours(cone(), 20.0);

    int circles = 0;
    for (const Contour& line : *contours.lines)
    {
        if (line.index < 1) continue; // those run out of the picture
        ++circles;
        EXPECT_TRUE(line.isClosed);
        for (const Point& point : line.points)
            EXPECT_NEAR(std::hypot(point.x - 50.5F, point.y - 50.5F), 59.5 - 20.0 * line.index,
                        0.02);
    }
    EXPECT_EQ(circles, 2);
}

TEST(Contours, CrossASideWhereLinearInterpolationPutsThem)
{
    const ContourSet contours = traceContours(patch(2, 2, {1, 5, 1, 5}), 4.0);

    ASSERT_EQ(contours.lines->size(), 1U);
    const Contour& line = contours.lines->front();
    EXPECT_EQ(line.index, 1);
    EXPECT_FALSE(line.isClosed);
    ASSERT_EQ(line.points.size(), 2U);
    for (const Point& point : line.points) EXPECT_FLOAT_EQ(point.x, 1.25F);
    EXPECT_FLOAT_EQ(std::abs(line.points[0].y - line.points[1].y), 1.0F);
}

TEST(Contours, FollowOneLineThroughManyCells)
{
    std::vector<float> heights;
    for (int row = 0; row < 20; ++row)
        for (int column = 0; column < 30; ++column)
            heights.push_back(static_cast<float>(row) - 9.5F);

    const ContourSet contours = traceContours(patch(30, 20, heights), 100.0);

    ASSERT_EQ(contours.lines->size(), 1U);
    EXPECT_EQ(contours.lines->front().points.size(), 30U);
    for (const Point& point : contours.lines->front().points) EXPECT_FLOAT_EQ(point.y, 10.0F);
}

/// Which corners the two lines through a saddle cut off, seen from the place of their middles.
bool cutsOffTheNorthWest(const ContourSet& contours)
{
    for (const Contour& line : *contours.lines)
    {
        const float x = (line.points[0].x + line.points[1].x) / 2.0F;
        const float y = (line.points[0].y + line.points[1].y) / 2.0F;
        if (x < 1.0F && y < 1.0F) return true;
    }
    return false;
}

TEST(Contours, LetTheMiddleDecideASaddle)
{
    const ContourSet highMiddle = traceContours(patch(2, 2, {9, 4, 4, 9}), 5.0);
    const ContourSet lowMiddle = traceContours(patch(2, 2, {6, 1, 1, 6}), 5.0);
    const ContourSet highOther = traceContours(patch(2, 2, {4, 9, 9, 4}), 5.0);
    const ContourSet lowOther = traceContours(patch(2, 2, {1, 6, 6, 1}), 5.0);

    for (const ContourSet& set : {highMiddle, lowMiddle, highOther, lowOther})
        ASSERT_EQ(set.lines->size(), 2U);
    EXPECT_FALSE(cutsOffTheNorthWest(highMiddle)); // the high corners are joined
    EXPECT_TRUE(cutsOffTheNorthWest(lowMiddle));   // they are islands
    EXPECT_TRUE(cutsOffTheNorthWest(highOther));
    EXPECT_FALSE(cutsOffTheNorthWest(lowOther));
}

TEST(Contours, CountAValueOnTheLevelAsAbove)
{
    EXPECT_TRUE(traceContours(patch(2, 2, {5, 5, 5, 5}), 5.0).lines->empty());
    EXPECT_TRUE(traceContours(patch(2, 2, {5, 6, 7, 8}), 5.0).lines->empty());
    EXPECT_EQ(traceContours(patch(2, 2, {4, 5, 4, 5}), 5.0).lines->size(), 1U);
}

TEST(Contours, RunThroughBothEdgesOfAPictureOfTheWholeEarth)
{
    const Field field = fieldOf({}, 36, 18, [](double, double latitude) { return latitude - 1.0; });

    const ContourSet contours = traceContours(field, 1000.0);

    ASSERT_EQ(contours.lines->size(), 1U);
    const std::vector<Point>& points = contours.lines->front().points;
    EXPECT_FLOAT_EQ(std::min(points.front().x, points.back().x), -0.5F);
    EXPECT_FLOAT_EQ(std::max(points.front().x, points.back().x), 36.5F);
}

TEST(Contours, CompareByContent)
{
    const ContourSet contours = traceContours(cone(), 20.0);

    EXPECT_EQ(contours, traceContours(cone(), 20.0));
    EXPECT_NE(contours, traceContours(cone(), 10.0));
    EXPECT_NE(contours, ContourSet());
    EXPECT_EQ(traceContours({}, 10.0), ContourSet());
}

TEST(Contours, RefuseABadInterval)
{
    for (const double bad : {0.0, -5.0, std::numeric_limits<double>::infinity(),
                             std::numeric_limits<double>::quiet_NaN()})
        EXPECT_EQ(errorOf([&] { traceContours(cone(), bad); }),
                  "the contour interval is not a positive number");
    EXPECT_EQ(errorOf([] { traceContours(cone(), 1e-6); }),
              "the contour interval gives more than 1000 levels");
}

} // namespace
} // namespace Maps
