#include "Shading.h"
#include <plugins/grid/tests/Support.h>

#include <gtest/gtest.h>

namespace Maps
{
namespace
{

const LinearImage
    kColours(2, 2,
             {{0.1F, 0.2F, 0.3F}, {0.4F, 0.5F, 0.6F}, {0.5F, 0.5F, 0.5F}, {0.2F, 0.2F, 0.2F}});

Field shadeOf(std::vector<float> values)
{
    return {{}, Raster<float>(2, 2, std::move(values))};
}

TEST(Shading, KeepsTheColoursOfLevelGround)
{
    const LinearImage shaded = shadeColours(kColours, shadeOf({0.6F, 0.6F, 0.6F, 0.6F}), 0.6, 0.8);

    for (int i = 0; i < 4; ++i)
        EXPECT_NEAR(shaded.at(i % 2, i / 2).green, kColours.at(i % 2, i / 2).green, 1e-6);
}

TEST(Shading, ScalesLightByAmbientAndShade)
{
    const LinearImage shaded = shadeColours(kColours, shadeOf({0.0F, 0.5F, 1.0F, 0.5F}), 0.5, 0.8);

    EXPECT_NEAR(shaded.at(0, 0).red, 0.1 * 0.6, 1e-6); // ambient 1 - 0.8 * 0.5
    EXPECT_NEAR(shaded.at(0, 0).blue, 0.3 * 0.6, 1e-6);
    EXPECT_NEAR(shaded.at(0, 1).red, 0.5 * 1.4, 1e-6);
}

TEST(Shading, LeavesColoursAloneWithoutContrast)
{
    EXPECT_EQ(shadeColours(kColours, shadeOf({0.0F, 0.2F, 0.7F, 1.0F}), 0.5, 0.0), kColours);
}

TEST(Shading, NeverGivesNegativeLight)
{
    const LinearImage shaded = shadeColours(kColours, shadeOf({0.0F, 0.0F, 0.0F, 0.0F}), 1.0, 2.0);

    for (const LinearRgb& colour : shaded.samples()) EXPECT_EQ(colour.red, 0.0F);
}

TEST(Shading, RefusesOtherSizesAndBadContrast)
{
    EXPECT_EQ(errorOf([] { shadeColours(kColours, {}, 0.5, 1.0); }),
              "the shade is not of the picture's size");
    for (const double bad : {-0.1, 2.1})
        EXPECT_EQ(errorOf([&] { shadeColours(kColours, shadeOf({0, 0, 0, 0}), 0.5, bad); }),
                  "the contrast of the shade is not between 0 and 2");
}

} // namespace
} // namespace Maps
