#pragma once

#include "Contours.h"

#include <span>
#include <vector>

namespace Maps
{

/// How dark and wide lines are: opacities 0 to 1, widths in pixels.
struct Pen
{
    double width = 1.0;
    double opacity = 0.5;

    friend bool operator==(const Pen&, const Pen&) = default;
};

/// How much of each pixel is covered by ink, 0 to 1. Where lines meet, the darker one counts, so
/// that joints and crossings do not show as dots.
class LineMask
{
public:
    /// \pre width and height are positive.
    LineMask(int width, int height);

    /// Draws a line with smooth edges; what lies beyond the mask is cut off.
    void drawSegment(const Point& from, const Point& to, const Pen& pen);

    /// Row after row. Valid until the next line.
    std::span<const float> cover() const { return cover_; }

    float at(int x, int y) const; ///< \pre within the mask.

private:
    void darken(int x, int y, float value);

    int width_;
    int height_;
    std::vector<float> cover_;
};

} // namespace Maps
