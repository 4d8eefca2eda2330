#include "ProfilePlot.h"
#include <plugins/grid/tests/Support.h>

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <vector>

namespace Maps
{
namespace
{

Profile profileOf(const std::function<double(double)>& valueAt)
{
    std::vector<float> values;
    for (int i = 0; i <= 200; ++i) values.push_back(static_cast<float>(valueAt(i / 200.0)));
    return {{10, 20}, {-30, 80}, 7.5e6, Raster<float>(201, 1, std::move(values))};
}

bool isCurve(const Rgb& pixel)
{
    return pixel.blue > pixel.red + 50;
}

/// The mean row of the curve in each column; -1 where there is none.
std::vector<double> curveOf(const Image& plot)
{
    std::vector<double> rows;
    for (int x = 0; x < plot.width(); ++x)
    {
        double sum = 0.0;
        int count = 0;
        for (int y = 0; y < plot.height(); ++y)
            if (isCurve(plot.at(x, y)))
            {
                sum += y + 0.5;
                ++count;
            }
        rows.push_back(count == 0 ? -1.0 : sum / count);
    }
    return rows;
}

struct Extent
{
    int first = -1;
    int last = -1;
};

Extent extentOf(const std::vector<double>& curve)
{
    Extent extent;
    for (int x = 0; x < static_cast<int>(curve.size()); ++x)
        if (curve[static_cast<std::size_t>(x)] >= 0.0)
        {
            if (extent.first < 0) extent.first = x;
            extent.last = x;
        }
    return extent;
}

TEST(ProfilePlot, IsOfTheWantedSize)
{
    const Image plot = plotProfile(profileOf([](double part) { return part; }), {640, 320, "m"});

    EXPECT_EQ(plot.width(), 640);
    EXPECT_EQ(plot.height(), 320);
}

TEST(ProfilePlot, ShowsALineAsALineThatRises)
{
    const auto curve = curveOf(plotProfile(profileOf([](double part) { return 40.0 * part; }), {}));
    const auto [first, last] = extentOf(curve);

    ASSERT_GT(last - first, 800);
    const auto at = [&](int x) { return curve[static_cast<std::size_t>(x)]; };
    const double slope = (at(last - 3) - at(first + 3)) / (last - first - 6);
    EXPECT_LT(slope, 0.0);
    for (int x = first + 3; x <= last - 3; ++x)
        EXPECT_NEAR(at(x), at(first + 3) + slope * (x - first - 3), 1.5) << x;
}

TEST(ProfilePlot, ShowsEachValueAtItsHeight)
{
    // The range of a sine is shown with a twentieth of it above and below.
    const auto curve = curveOf(plotProfile(
        profileOf([](double part) { return 5.0 + 2.0 * std::sin(6.283185307 * part); }), {}));
    const auto [first, last] = extentOf(curve);

    const auto atPart = [&](double part) {
        return curve[static_cast<std::size_t>(first + part * (last - first))];
    };
    EXPECT_LT(atPart(0.25), atPart(0.5));
    EXPECT_LT(atPart(0.5), atPart(0.75));
    EXPECT_NEAR(atPart(0.5), 0.5 * (atPart(0.25) + atPart(0.75)), 4.0);
}

TEST(ProfilePlot, HasAGapWhereThereIsNoValue)
{
    const auto curve = curveOf(plotProfile(profileOf([](double part) {
                                               return part > 0.4 && part < 0.6
                                                          ? std::nan("")
                                                          : std::sin(9.0 * part);
                                           }),
                                           {}));
    const auto [first, last] = extentOf(curve);

    EXPECT_EQ(curve[static_cast<std::size_t>((first + last) / 2)], -1.0);
    EXPECT_GE(curve[static_cast<std::size_t>(first + (last - first) / 5)], 0.0);
}

TEST(ProfilePlot, ShowsAConstantInTheMiddle)
{
    const auto curve =
        curveOf(plotProfile(profileOf([](double) { return -3.0; }), {1000, 500, "m"}));
    const auto [first, last] = extentOf(curve);

    EXPECT_GT(last - first, 800);
    EXPECT_NEAR(curve[500], 235.0, 30.0);
}

TEST(ProfilePlot, RefusesWhatCannotBePlotted)
{
    EXPECT_EQ(errorOf([] { plotProfile(Profile(), {}); }), "there is no profile to plot");
    EXPECT_EQ(errorOf([] { plotProfile(profileOf([](double) { return std::nan(""); }), {}); }),
              "the profile has no values");
    for (const auto& [width, height] :
         {std::pair(199, 400), std::pair(400, 149), std::pair(9000, 400)})
        EXPECT_EQ(errorOf([&] {
                      plotProfile(profileOf([](double part) { return part; }),
                                  {width, height, "m"});
                  }),
                  "the plot is not between 200 x 150 and 8192 x 8192 pixels");
}

} // namespace
} // namespace Maps
