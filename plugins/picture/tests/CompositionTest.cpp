#include "Composition.h"
#include <plugins/grid/tests/Support.h>

#include <gtest/gtest.h>

#include <vector>

namespace Maps
{
namespace
{

constexpr LinearRgb kRed{1.0F, 0.0F, 0.0F};
constexpr LinearRgb kGreen{0.0F, 1.0F, 0.0F};
constexpr LinearRgb kBack{0.25F, 0.25F, 0.25F};

LinearImage plain(int width, int height, const LinearRgb& colour)
{
    return {width, height, std::vector<LinearRgb>(sampleCount(width, height), colour)};
}

TEST(Composition, PutsPicturesSideBySideOnOneMiddleLine)
{
    const LinearImage picture = compose(plain(4, 6, kRed), plain(3, 2, kGreen), {false, 5, kBack});

    ASSERT_EQ(picture.width(), 12);
    ASSERT_EQ(picture.height(), 6);
    for (int y = 0; y < 6; ++y)
        for (int x = 0; x < 12; ++x)
        {
            const bool isSecond = x >= 9 && y >= 2 && y < 4;
            EXPECT_EQ(picture.at(x, y), x < 4 ? kRed : isSecond ? kGreen : kBack) << x << ' ' << y;
        }
}

TEST(Composition, PutsThePicturesBelowEachOther)
{
    const LinearImage picture = compose(plain(2, 3, kRed), plain(6, 4, kGreen), {true, 1, kBack});

    ASSERT_EQ(picture.width(), 6);
    ASSERT_EQ(picture.height(), 8);
    EXPECT_EQ(picture.at(1, 0), kBack);
    EXPECT_EQ(picture.at(2, 2), kRed);
    EXPECT_EQ(picture.at(2, 3), kBack);
    EXPECT_EQ(picture.at(0, 4), kGreen);
    EXPECT_EQ(picture.at(5, 7), kGreen);
}

TEST(Composition, LeavesAPictureAsItIsIfTheOtherIsEmpty)
{
    const LinearImage picture = plain(2, 3, kRed);

    EXPECT_EQ(compose(picture, {}, {false, 7, kBack}), picture);
    EXPECT_EQ(compose({}, picture, {true, 7, kBack}), picture);
}

TEST(Composition, RefusesGapsAndSizesBeyondTheirRanges)
{
    for (const int bad : {-1, kGreatestGap + 1})
        EXPECT_EQ(errorOf([&] { compose({}, {}, {false, bad, kBack}); }),
                  "the gap between the pictures is not between 0 and 4096 pixels");
    EXPECT_EQ(
        errorOf([] { compose(plain(20000, 1, kRed), plain(20000, 1, kGreen), {false, 0, kBack}); }),
        "the pictures together are longer than 32768 pixels");
}

} // namespace
} // namespace Maps
