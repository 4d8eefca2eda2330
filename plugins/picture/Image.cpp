#include "Image.h"

#include <utility>
#include <vector>

namespace Maps
{

Image encode(const LinearImage& image)
{
    if (image.isEmpty()) return {};
    std::vector<Rgb> pixels;
    pixels.reserve(image.samples().size());
    for (const LinearRgb& colour : image.samples()) pixels.push_back(encode(colour));
    return {image.width(), image.height(), std::move(pixels)};
}

} // namespace Maps
