#include "ColourMap.h"
#include <plugins/grid/tests/Support.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace Maps
{
namespace
{

/// The colours at `count` + 1 evenly spaced heights from the lowest to the highest.
std::vector<Oklab> coloursOf(const ColourMap& map, int count)
{
    std::vector<Oklab> colours;
    for (int i = 0; i <= count; ++i)
        colours.push_back(toOklab(map.at(map.low() + i * (map.high() - map.low()) / count)));
    return colours;
}

double chroma(const Oklab& colour)
{
    return std::hypot(colour.a, colour.b);
}

TEST(ColourMap, TakesEvenStepsToTheEye)
{
    for (const ColourMap& map :
         {ColourMap(-100, 100), ColourMap(-110, 0), ColourMap(0, 90), ColourMap(-110, 90)})
    {
        const std::vector<Oklab> colours = coloursOf(map, 200);
        std::vector<double> steps;
        for (std::size_t i = 1; i < colours.size(); ++i)
            steps.push_back(difference(colours[i - 1], colours[i]));

        const auto [least, greatest] = std::minmax_element(steps.begin(), steps.end());
        EXPECT_LT(*greatest / *least, 1.03) << map.low() << " to " << map.high();
    }
}

TEST(ColourMap, DarkensEvenlyFromZeroToBothEnds)
{
    const std::vector<Oklab> colours = coloursOf(ColourMap(-100, 100), 200);

    for (std::size_t i = 1; i <= 100; ++i)
    {
        EXPECT_LT(colours[100 + i].lightness, colours[99 + i].lightness);
        EXPECT_LT(colours[100 - i].lightness, colours[101 - i].lightness);
        EXPECT_NEAR(colours[100 + i].lightness, colours[100 - i].lightness, 0.03);
    }
}

TEST(ColourMap, IsNeutralAtZeroAndTellsTheSignByHue)
{
    const ColourMap map(-100, 100);

    EXPECT_NEAR(chroma(toOklab(map.at(0.0))), 0.0, 1e-3);
    EXPECT_LT(toOklab(map.at(-50.0)).b, -0.05);
    EXPECT_GT(toOklab(map.at(50.0)).b, 0.05);
    EXPECT_GT(chroma(toOklab(map.at(-100.0))), 0.14);
    EXPECT_GT(chroma(toOklab(map.at(100.0))), 0.14);
}

TEST(ColourMap, CanBeShown)
{
    const ColourMap map(-100, 100);
    for (int i = -1000; i <= 1000; ++i)
    {
        const LinearRgb colour = map.at(0.1 * i);
        for (const float channel : {colour.red, colour.green, colour.blue})
        {
            EXPECT_GE(channel, 0.0F) << i;
            EXPECT_LE(channel, 1.0F) << i;
        }
    }
}

TEST(ColourMap, HasOneScaleForBothSides)
{
    const ColourMap map(-110, 40);

    EXPECT_EQ(map.at(-110.0), ColourMap(-110, 110).at(-110.0));
    EXPECT_EQ(map.at(40.0), ColourMap(-110, 110).at(40.0));
    EXPECT_EQ(map.at(0.0), ColourMap().at(0.0));
}

TEST(ColourMap, EndsWithItsRange)
{
    const ColourMap map(-110, 40);

    EXPECT_EQ(map.at(-500.0), map.at(-110.0));
    EXPECT_EQ(map.at(100.0), map.at(40.0));
}

TEST(ColourMap, PaintsEachPixel)
{
    const ColourMap map(-10, 10);
    const Field field{{}, Raster<float>(2, 2, {-10.0F, 0.0F, 5.0F, 20.0F})};

    const LinearImage image = map.paint(field);

    EXPECT_EQ(image, LinearImage(2, 2, {map.at(-10.0), map.at(0.0), map.at(5.0), map.at(10.0)}));
    EXPECT_TRUE(map.paint({}).isEmpty());
}

TEST(ColourMap, RefusesARangeThatIsEmptyOrNotFinite)
{
    constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    const double ranges[][2] = {{1, 1}, {2, 1}, {kNan, 1}, {0, kNan}, {0, kInfinity}};

    for (const auto& range : ranges)
        EXPECT_EQ(errorOf([&] { ColourMap(range[0], range[1]); }),
                  "the range of heights is empty or not finite");
}

TEST(ColourMap, ComparesByRange)
{
    EXPECT_EQ(ColourMap(), ColourMap(-100, 100));
    EXPECT_NE(ColourMap(), ColourMap(-100, 90));
}

} // namespace
} // namespace Maps
