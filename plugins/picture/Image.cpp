#include "Image.h"

#include <utility>
#include <vector>

namespace Maps
{

namespace
{

/// A picture of which each pixel is made of that of another.
template <class To, class From>
Raster<To> converted(const Raster<From>& image, To (*convert)(const From&))
{
    if (image.isEmpty()) return {};
    std::vector<To> pixels;
    pixels.reserve(image.samples().size());
    for (const From& colour : image.samples()) pixels.push_back(convert(colour));
    return {image.width(), image.height(), std::move(pixels)};
}

} // namespace

Image encode(const LinearImage& image)
{
    return converted<Rgb, LinearRgb>(image, encode);
}

LinearImage decode(const Image& image)
{
    return converted<LinearRgb, Rgb>(image, decode);
}

} // namespace Maps
