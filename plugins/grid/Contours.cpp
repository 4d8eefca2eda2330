#include "Contours.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <utility>

namespace Maps
{

namespace
{

/// Where a contour crosses a side of a cell. The side's number is the same for the two cells that
/// share it, and no level crosses a side twice: two ends with one number are one place.
struct End
{
    std::int64_t side;
    Point point;
};

using Segment = std::array<End, 2>;
using SegmentsByLevel = std::map<int, std::vector<Segment>>;

/// Walks the cells of a field and collects what crosses them.
class CellWalk
{
public:
    CellWalk(const Field& field, double interval) : field_(field), interval_(interval) {}

    SegmentsByLevel walk()
    {
        const bool wraps = field_.region.wraps();
        const int firstColumn = wraps ? -1 : 0;
        const int lastColumn = wraps ? field_.width() - 1 : field_.width() - 2;
        for (int row = 0; row + 1 < field_.height(); ++row)
            for (int column = firstColumn; column <= lastColumn; ++column) visit(column, row);
        return std::move(segments_);
    }

private:
    /// Corners and sides of the cell at hand, clockwise: corner 0 is the north-western one, side i
    /// leads from corner i to corner i + 1.
    void visit(int column, int row)
    {
        column_ = column;
        row_ = row;
        corners_ = {at(column, row), at(column + 1, row), at(column + 1, row + 1),
                    at(column, row + 1)};
        const auto [low, high] = std::minmax_element(corners_.begin(), corners_.end());
        const int first = static_cast<int>(std::floor(*low / interval_));
        const int last = static_cast<int>(std::floor(*high / interval_));
        for (int index = first; index <= last; ++index) cross(index);
    }

    double at(int column, int row) const
    {
        const int width = field_.width();
        return field_.values.at((column + width) % width, row);
    }

    void cross(int index)
    {
        const double level = index * interval_;
        std::array<bool, 4> isAbove{};
        for (std::size_t i = 0; i < 4; ++i) isAbove[i] = corners_[i] >= level;

        std::array<int, 4> crossed{};
        std::size_t count = 0;
        for (std::size_t i = 0; i < 4; ++i)
            if (isAbove[i] != isAbove[(i + 1) % 4]) crossed[count++] = static_cast<int>(i);

        if (count == 2) add(index, crossed[0], crossed[1]);
        if (count == 4) addSaddle(index, isAbove[0]);
    }

    /// A line cuts off a corner that lies on the other side of the level than the middle does.
    void addSaddle(int index, bool isFirstAbove)
    {
        const double middle = (corners_[0] + corners_[1] + corners_[2] + corners_[3]) / 4.0;
        const bool isMiddleAbove = middle >= index * interval_;
        const int cutOff = isMiddleAbove == isFirstAbove ? 1 : 0; // and the one opposite
        add(index, (cutOff + 3) % 4, cutOff);
        add(index, cutOff + 1, cutOff + 2);
    }

    void add(int index, int sideA, int sideB)
    {
        segments_[index].push_back({end(sideA, index * interval_), end(sideB, index * interval_)});
    }

    /// Sides are walked from west to east and from north to south whichever cell asks, so that
    /// both get the same point to the last bit.
    End end(int side, double level) const
    {
        const int column = column_ + (side == 1 ? 1 : 0);
        const int row = row_ + (side == 2 ? 1 : 0);
        const bool isEastward = side == 0 || side == 2;
        const double from = at(column, row);
        const double to = isEastward ? at(column + 1, row) : at(column, row + 1);
        const double fraction = (level - from) / (to - from);
        const double x = column + 0.5 + (isEastward ? fraction : 0.0);
        const double y = row + 0.5 + (isEastward ? 0.0 : fraction);
        const std::int64_t corner = std::int64_t{row} * (field_.width() + 2) + column + 1;
        return {2 * corner + (isEastward ? 0 : 1), {static_cast<float>(x), static_cast<float>(y)}};
    }

    const Field& field_;
    const double interval_;
    SegmentsByLevel segments_;
    int column_ = 0;
    int row_ = 0;
    std::array<double, 4> corners_{};
};

/// Joins the segments of one level, end to end, into lines.
class Joiner
{
public:
    Joiner(const std::vector<Segment>& segments, int index)
        : segments_(segments), index_(index), isUsed_(segments.size(), false)
    {
        findPartners();
    }

    /// Lines that end at an edge first, so that none of them is entered in its middle.
    void join(std::vector<Contour>& lines)
    {
        for (std::size_t end = 0; end < partners_.size(); ++end)
            if (partners_[end] == kNone && !isUsed_[end / 2]) lines.push_back(follow(end));
        for (std::size_t end = 0; end < partners_.size(); end += 2)
            if (!isUsed_[end / 2]) lines.push_back(follow(end));
    }

private:
    static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

    const End& end(std::size_t number) const { return segments_[number / 2][number % 2]; }

    /// The ends of segment n are numbered 2n and 2n + 1.
    void findPartners()
    {
        partners_.assign(2 * segments_.size(), kNone);
        std::vector<std::size_t> bySide(partners_.size());
        for (std::size_t i = 0; i < bySide.size(); ++i) bySide[i] = i;
        std::sort(bySide.begin(), bySide.end(), [this](std::size_t left, std::size_t right) {
            return std::pair(end(left).side, left) < std::pair(end(right).side, right);
        });
        for (std::size_t i = 1; i < bySide.size(); ++i)
        {
            if (end(bySide[i - 1]).side != end(bySide[i]).side) continue;
            partners_[bySide[i - 1]] = bySide[i];
            partners_[bySide[i]] = bySide[i - 1];
        }
    }

    Contour follow(std::size_t start)
    {
        Contour line{index_, false, {end(start).point}};
        for (std::size_t entry = start;;)
        {
            isUsed_[entry / 2] = true;
            const std::size_t exit = entry ^ 1U;
            const std::size_t next = partners_[exit];
            line.isClosed = next == start;
            if (line.isClosed) return line;
            line.points.push_back(end(exit).point);
            if (next == kNone) return line;
            entry = next;
        }
    }

    const std::vector<Segment>& segments_;
    int index_;
    std::vector<bool> isUsed_;
    std::vector<std::size_t> partners_; // of each end, the other one at the same place, or kNone
};

void checkInterval(const Field& heights, double interval)
{
    if (!(interval > 0.0 && std::isfinite(interval)))
        throw MapError("the contour interval is not a positive number");
    const auto samples = heights.values.samples();
    const auto [low, high] = std::minmax_element(samples.begin(), samples.end());
    const double extent = std::max(std::abs(double{*low}), std::abs(double{*high}));
    if ((double{*high} - *low) / interval > kMostLevels || extent / interval > 1e9)
        throw MapError("the contour interval gives more than " + std::to_string(kMostLevels) +
                       " levels");
}

} // namespace

ContourSet traceContours(const Field& heights, double interval)
{
    if (heights.values.isEmpty()) return {};
    checkInterval(heights, interval);

    std::vector<Contour> lines;
    for (const auto& [index, segments] : CellWalk(heights, interval).walk())
        Joiner(segments, index).join(lines);
    return {interval, heights.width(), heights.height(),
            std::make_shared<const std::vector<Contour>>(std::move(lines))};
}

} // namespace Maps
