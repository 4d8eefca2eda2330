#include "Annotation.h"
#include "PictureValues.h"
#include <plugins/grid/tests/Support.h>

#include <gtest/gtest.h>

#include <optional>
#include <vector>

namespace Maps
{
namespace
{

constexpr Rgb kColour{200, 40, 120};

Image plain(int width, int height)
{
    return {width, height, std::vector<Rgb>(sampleCount(width, height), kColour)};
}

int countOf(const Image& picture, const Rgb& colour)
{
    int count = 0;
    for (const Rgb& pixel : picture.samples())
        if (pixel == colour) ++count;
    return count;
}

/// The annotation of a caption, with a bar if there is a map.
Annotation of(const Caption& caption, const std::optional<ColourMap>& bar = {})
{
    Annotation annotation;
    annotation.caption = caption;
    annotation.bar = bar;
    return annotation;
}

TEST(Annotation, KeepsThePicturePixelForPixel)
{
    const Image picture =
        annotate(plain(300, 200), of({"A title", "and more", "mm"}, ColourMap(-1.0, 1.0)));

    EXPECT_EQ(countOf(picture, kColour), 300 * 200);
}

TEST(Annotation, TakesRoomForWhatItIsGivenAlone)
{
    const Image bare = annotate(plain(300, 200), {});
    const Image titled = annotate(plain(300, 200), of({"A title", "", ""}));
    const Image barred = annotate(plain(300, 200), of({"", "", "mm"}, ColourMap(-1.0, 1.0)));

    EXPECT_GT(titled.height(), bare.height());
    EXPECT_EQ(titled.width(), bare.width());
    EXPECT_GT(barred.width(), bare.width());
    EXPECT_EQ(barred.height(), bare.height());
}

TEST(Annotation, ShowsTheColoursOfTheBarFromHighToLow)
{
    const ColourMap map(-50.0, 100.0);
    const Image picture = annotate(plain(300, 200), of({"", "", "m"}, map));

    EXPECT_GT(countOf(picture, encode(map.at(99.6))), 5);
    EXPECT_GT(countOf(picture, encode(map.at(-49.6))), 5);
}

TEST(Annotation, WritesLightOnDarkPaper)
{
    Annotation annotation = of({"A title", "", ""});
    annotation.paper = {16, 18, 24};
    const Image picture = annotate(plain(300, 200), annotation);

    EXPECT_EQ(picture.at(0, 0), annotation.paper);
    EXPECT_GE(countOf(picture, {232, 234, 240}), 2 * (300 + 200)) << "the frame";
    EXPECT_EQ(countOf(picture, {28, 30, 36}), 0);
}

TEST(Annotation, LeavesTheFrameOutIfToldSo)
{
    Annotation annotation;
    annotation.hasFrame = false;

    EXPECT_EQ(countOf(annotate(plain(300, 200), annotation), {28, 30, 36}), 0);
}

TEST(Annotation, RefusesAnEmptyPicture)
{
    EXPECT_EQ(errorOf([] { annotate(Image(), {}); }), "there is no picture to annotate");
}

TEST(Annotation, SurvivesTheWayThroughLight)
{
    std::vector<Rgb> all;
    for (int i = 0; i < 256; ++i)
        all.push_back({static_cast<std::uint8_t>(i), static_cast<std::uint8_t>(255 - i),
                       static_cast<std::uint8_t>(i * 7)});
    const Image picture(256, 1, std::move(all));

    EXPECT_EQ(encode(decode(picture)), picture);
}

TEST(RgbText, IsHexadecimal)
{
    using Trait = Quorl::VValueTrait<Rgb>;
    Rgb colour;

    EXPECT_TRUE(Trait::setValueFromText(colour, "#0aB4ff"));
    EXPECT_EQ(colour, (Rgb{10, 180, 255}));
    EXPECT_EQ(Trait::Text(colour), "#0ab4ff");
    for (const char* bad : {"", "#", "0ab4ff", "#0ab4f", "#0ab4ff0", "#0ab4fg", "#-ab4ff", "red"})
        EXPECT_FALSE(Trait::setValueFromText(colour, bad)) << bad;
    EXPECT_EQ(colour, (Rgb{10, 180, 255}));
}

} // namespace
} // namespace Maps
