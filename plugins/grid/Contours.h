#pragma once

#include "Field.h"

#include <memory>
#include <vector>

namespace Maps
{

/// A place in a picture, in pixels from its upper left corner: x to the right, y downwards. The
/// middle of the first pixel is (0.5, 0.5).
struct Point
{
    float x = 0.0F;
    float y = 0.0F;

    friend bool operator==(const Point&, const Point&) = default;
};

/// A line along which the heights have one value.
struct Contour
{
    int index = 0;         ///< the value in intervals: 0 for zero, 5 for every fifth above it
    bool isClosed = false; ///< the last point is joined to the first; else it ends at an edge
    std::vector<Point> points;

    friend bool operator==(const Contour&, const Contour&) = default;
};

/// All contours of a field: a handle on shared lines that nobody changes any more. Cheap to copy;
/// equal if interval, size and lines are. A default one is empty.
struct ContourSet
{
    double interval = 0.0; ///< metres
    int width = 0;         ///< pixels, of the field
    int height = 0;
    std::shared_ptr<const std::vector<Contour>> lines; ///< lowest first; null if empty

    friend bool operator==(const ContourSet& left, const ContourSet& right)
    {
        if (left.interval != right.interval || left.width != right.width ||
            left.height != right.height)
            return false;
        return left.lines == right.lines ||
               (left.lines && right.lines && *left.lines == *right.lines);
    }
};

/// The most levels that a field may have between its lowest and its highest value.
inline constexpr int kMostLevels = 1000;

/// The contours at all multiples of `interval` metres, by marching squares over the cells between
/// four pixel middles; a line crosses a cell's side where linear interpolation puts it.
///
/// A value counts as above a level if it is equal to it. Where two opposite corners are above and
/// two are not, the mean of the four decides: if it is above, the two corners above are joined.
/// Where the region goes round the Earth, the cells between the last column and the first are
/// walked at both edges of the picture, so lines run half a pixel beyond it and leave no gap.
/// \throws MapError unless the interval is finite and positive, and gives at most kMostLevels.
ContourSet traceContours(const Field& heights, double interval);

} // namespace Maps
