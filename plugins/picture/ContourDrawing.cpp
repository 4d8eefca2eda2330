#include "ContourDrawing.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <span>
#include <utility>
#include <vector>

namespace Maps
{

namespace
{

constexpr LinearRgb kInk{0.010F, 0.012F, 0.020F};

/// How much of each pixel is covered by ink, 0 to 1.
class Mask
{
public:
    Mask(int width, int height)
        : width_(width), height_(height), cover_(sampleCount(width, height), 0.0F)
    {
    }

    /// The edge of a line is one pixel of ramp, centred on its true place: the covered part of a
    /// pixel, near enough.
    void drawSegment(const Point& from, const Point& to, const Pen& pen)
    {
        const auto reach = static_cast<float>(0.5 * pen.width + 0.5);
        const auto opacity = static_cast<float>(pen.opacity);
        const int left = std::max(0, floor(std::min(from.x, to.x) - reach));
        const int right = std::min(width_ - 1, floor(std::max(from.x, to.x) + reach));
        const int top = std::max(0, floor(std::min(from.y, to.y) - reach));
        const int bottom = std::min(height_ - 1, floor(std::max(from.y, to.y) + reach));
        for (int y = top; y <= bottom; ++y)
            for (int x = left; x <= right; ++x)
            {
                const Point middle{static_cast<float>(x) + 0.5F, static_cast<float>(y) + 0.5F};
                const float covered = reach - distance(middle, from, to);
                darken(x, y, opacity * std::clamp(covered, 0.0F, 1.0F));
            }
    }

    std::span<const float> cover() const { return cover_; }

private:
    static int floor(float value) { return static_cast<int>(std::floor(value)); }

    static float distance(const Point& point, const Point& from, const Point& to)
    {
        const float dx = to.x - from.x;
        const float dy = to.y - from.y;
        const float length = dx * dx + dy * dy;
        const float along =
            length > 0.0F ? ((point.x - from.x) * dx + (point.y - from.y) * dy) / length : 0.0F;
        const float nearest = std::clamp(along, 0.0F, 1.0F);
        const float x = point.x - from.x - nearest * dx;
        const float y = point.y - from.y - nearest * dy;
        return std::sqrt(x * x + y * y);
    }

    void darken(int x, int y, float value)
    {
        float& cover = cover_[static_cast<std::size_t>(y) * static_cast<std::size_t>(width_) +
                              static_cast<std::size_t>(x)];
        cover = std::max(cover, value);
    }

    int width_;
    int height_;
    std::vector<float> cover_;
};

const Pen& penFor(const Contour& line, const ContourStyle& style)
{
    if (line.index == 0) return style.zero;
    return line.index % 5 == 0 ? style.fifth : style.plain;
}

void drawLine(Mask& mask, const Contour& line, const Pen& pen)
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

    Mask mask(picture.width(), picture.height());
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
