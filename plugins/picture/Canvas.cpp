#include "Canvas.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <utility>

namespace Maps
{

namespace
{

std::uint8_t mix(std::uint8_t from, std::uint8_t to, double part)
{
    return static_cast<std::uint8_t>(std::lround(from + part * (to - from)));
}

} // namespace

Canvas::Canvas(int width, int height, const Rgb& background)
    : width_(width), height_(height), pixels_(sampleCount(width, height), background)
{
}

Rgb* Canvas::pixel(int x, int y)
{
    if (x < 0 || y < 0 || x >= width_ || y >= height_) return nullptr;
    return &pixels_[static_cast<std::size_t>(y) * static_cast<std::size_t>(width_) +
                    static_cast<std::size_t>(x)];
}

void Canvas::blend(int x, int y, const Rgb& colour, double cover)
{
    Rgb* const target = pixel(x, y);
    if (!target) return;
    *target = {mix(target->red, colour.red, cover), mix(target->green, colour.green, cover),
               mix(target->blue, colour.blue, cover)};
}

void Canvas::fill(int x, int y, int width, int height, const Rgb& colour)
{
    for (int row = y; row < y + height; ++row)
        for (int column = x; column < x + width; ++column)
            if (Rgb* const target = pixel(column, row)) *target = colour;
}

void Canvas::frame(int x, int y, int width, int height, int thickness, const Rgb& colour)
{
    const int outerWidth = width + 2 * thickness;
    fill(x - thickness, y - thickness, outerWidth, thickness, colour);
    fill(x - thickness, y + height, outerWidth, thickness, colour);
    fill(x - thickness, y, thickness, height, colour);
    fill(x + width, y, thickness, height, colour);
}

void Canvas::paste(int x, int y, const Image& image)
{
    for (int row = 0; row < image.height(); ++row)
        for (int column = 0; column < image.width(); ++column)
            if (Rgb* const target = pixel(x + column, y + row)) *target = image.at(column, row);
}

Image Canvas::finish() &&
{
    return {width_, height_, std::move(pixels_)};
}

} // namespace Maps
