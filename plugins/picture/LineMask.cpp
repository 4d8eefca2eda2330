#include "LineMask.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace Maps
{
namespace
{

int floorOf(float value)
{
    return static_cast<int>(std::floor(value));
}

float distance(const Point& point, const Point& from, const Point& to)
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

} // namespace

LineMask::LineMask(int width, int height)
    : width_(width), height_(height), cover_(sampleCount(width, height), 0.0F)
{
}

/// The edge of a line is one pixel of ramp, centred on its true place: the covered part of a pixel,
/// near enough.
void LineMask::drawSegment(const Point& from, const Point& to, const Pen& pen)
{
    const auto reach = static_cast<float>(0.5 * pen.width + 0.5);
    const auto opacity = static_cast<float>(pen.opacity);
    const int left = std::max(0, floorOf(std::min(from.x, to.x) - reach));
    const int right = std::min(width_ - 1, floorOf(std::max(from.x, to.x) + reach));
    const int top = std::max(0, floorOf(std::min(from.y, to.y) - reach));
    const int bottom = std::min(height_ - 1, floorOf(std::max(from.y, to.y) + reach));
    for (int y = top; y <= bottom; ++y)
        for (int x = left; x <= right; ++x)
        {
            const Point middle{static_cast<float>(x) + 0.5F, static_cast<float>(y) + 0.5F};
            const float covered = reach - distance(middle, from, to);
            darken(x, y, opacity * std::clamp(covered, 0.0F, 1.0F));
        }
}

float LineMask::at(int x, int y) const
{
    return cover_[static_cast<std::size_t>(y) * static_cast<std::size_t>(width_) +
                  static_cast<std::size_t>(x)];
}

void LineMask::darken(int x, int y, float value)
{
    float& cover = cover_[static_cast<std::size_t>(y) * static_cast<std::size_t>(width_) +
                          static_cast<std::size_t>(x)];
    cover = std::max(cover, value);
}

} // namespace Maps
