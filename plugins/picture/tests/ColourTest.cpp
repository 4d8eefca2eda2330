#include "Image.h"

#include <gtest/gtest.h>

namespace Maps
{
namespace
{

TEST(Colour, KeepsEachStoredValue)
{
    for (int value = 0; value < 256; ++value)
    {
        const auto channel = static_cast<std::uint8_t>(value);
        const Rgb colour{channel, static_cast<std::uint8_t>(255 - value), channel};
        EXPECT_EQ(encode(decode(colour)), colour);
    }
}

TEST(Colour, CutsOffWhatCannotBeShown)
{
    EXPECT_EQ(encode(LinearRgb{-0.5F, 1.5F, 1.0F}), (Rgb{0, 255, 255}));
}

TEST(Colour, AgreesWithTheReferenceValuesOfOklab)
{
    const Oklab white = toOklab({1.0F, 1.0F, 1.0F});
    EXPECT_NEAR(white.lightness, 1.0, 1e-4);
    EXPECT_NEAR(white.a, 0.0, 1e-4);
    EXPECT_NEAR(white.b, 0.0, 1e-4);

    const Oklab red = toOklab({1.0F, 0.0F, 0.0F});
    EXPECT_NEAR(red.lightness, 0.62796, 1e-4);
    EXPECT_NEAR(red.a, 0.22486, 1e-4);
    EXPECT_NEAR(red.b, 0.12585, 1e-4);
}

TEST(Colour, ComesBackFromOklab)
{
    const LinearRgb colour{0.2F, 0.5F, 0.7F};

    const LinearRgb back = toLinearRgb(toOklab(colour));

    EXPECT_NEAR(back.red, colour.red, 1e-5);
    EXPECT_NEAR(back.green, colour.green, 1e-5);
    EXPECT_NEAR(back.blue, colour.blue, 1e-5);
}

TEST(Image, IsEncodedPixelByPixel)
{
    const LinearImage image(2, 1, {{0.0F, 0.0F, 0.0F}, {1.0F, 1.0F, 1.0F}});

    EXPECT_EQ(encode(image), Image(2, 1, {{0, 0, 0}, {255, 255, 255}}));
    EXPECT_TRUE(encode(LinearImage()).isEmpty());
}

} // namespace
} // namespace Maps
