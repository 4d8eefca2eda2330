#include "ContourDrawing.h"

#include <cstddef>
#include <utility>
#include <vector>

namespace Maps
{

namespace
{

constexpr LinearRgb kInk{0.010F, 0.012F, 0.020F};

const Pen& penFor(const Contour& line, const ContourStyle& style)
{
    if (line.index == 0) return style.zero;
    return line.index % 5 == 0 ? style.fifth : style.plain;
}

void drawLine(LineMask& mask, const Contour& line, const Pen& pen)
{
    for (std::size_t i = 1; i < line.points.size(); ++i)
        mask.drawSegment(line.points[i - 1], line.points[i], pen);
    if (line.isClosed) mask.drawSegment(line.points.back(), line.points.front(), pen);
}

} // namespace

LinearImage drawContours(const LinearImage& picture, const ContourSet& contours,
                         const ContourStyle& style)
{
    if (picture.width() != contours.width || picture.height() != contours.height)
        throw MapError("the contours are not of the picture's size");
    if (!contours.lines) return picture;

    LineMask mask(picture.width(), picture.height());
    for (const Contour& line : *contours.lines) drawLine(mask, line, penFor(line, style));

    std::vector<LinearRgb> pixels(picture.samples().begin(), picture.samples().end());
    for (std::size_t i = 0; i < pixels.size(); ++i)
    {
        const float ink = mask.cover()[i];
        pixels[i].red += ink * (kInk.red - pixels[i].red);
        pixels[i].green += ink * (kInk.green - pixels[i].green);
        pixels[i].blue += ink * (kInk.blue - pixels[i].blue);
    }
    return {picture.width(), picture.height(), std::move(pixels)};
}

} // namespace Maps
