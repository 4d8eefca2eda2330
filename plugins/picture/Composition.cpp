#include "Composition.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace Maps
{
namespace
{

struct Corner
{
    int left = 0;
    int top = 0;
};

void paste(std::vector<LinearRgb>& pixels, int width, const Corner& corner,
           const LinearImage& image)
{
    for (int row = 0; row < image.height(); ++row)
        std::ranges::copy(image.row(row),
                          pixels.begin() +
                              static_cast<std::ptrdiff_t>(sampleCount(width, corner.top + row)) +
                              corner.left);
}

} // namespace

LinearImage compose(const LinearImage& first, const LinearImage& second,
                    const Arrangement& arrangement)
{
    if (arrangement.gap < 0 || arrangement.gap > kGreatestGap)
        throw MapError("the gap between the pictures is not between 0 and 4096 pixels");
    if (first.isEmpty()) return second;
    if (second.isEmpty()) return first;

    const int widest = std::max(first.width(), second.width());
    const int highest = std::max(first.height(), second.height());
    const int width =
        arrangement.isBelow ? widest : first.width() + arrangement.gap + second.width();
    const int height =
        arrangement.isBelow ? first.height() + arrangement.gap + second.height() : highest;
    if (std::max(width, height) > kLongestComposed)
        throw MapError("the pictures together are longer than " + std::to_string(kLongestComposed) +
                       " pixels");

    std::vector<LinearRgb> pixels(sampleCount(width, height), arrangement.background);
    if (arrangement.isBelow)
    {
        paste(pixels, width, {(width - first.width()) / 2, 0}, first);
        paste(pixels, width, {(width - second.width()) / 2, height - second.height()}, second);
    }
    else
    {
        paste(pixels, width, {0, (height - first.height()) / 2}, first);
        paste(pixels, width, {width - second.width(), (height - second.height()) / 2}, second);
    }
    return {width, height, std::move(pixels)};
}

} // namespace Maps
