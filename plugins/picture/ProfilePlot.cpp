#include "ProfilePlot.h"

#include "FrameParts.h"
#include "LineMask.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace Maps
{
namespace
{

constexpr double kMetresPerKilometre = 1000.0;
constexpr Rgb kPaper{255, 255, 255};
constexpr Rgb kGridInk{222, 225, 230};
constexpr Rgb kCurveInk{38, 84, 164};

/// What an axis shows from its beginning to its end.
struct Range
{
    double low;
    double high;

    double part(double value) const { return (value - low) / (high - low); }
};

/// All values with a twentieth of their range on either side; around a constant, what is of its
/// size.
Range rangeOf(const Raster<float>& values)
{
    double low = std::numeric_limits<double>::infinity();
    double high = -low;
    for (const float value : values.samples())
        if (std::isfinite(value))
        {
            low = std::min(low, double{value});
            high = std::max(high, double{value});
        }
    if (low > high) throw MapError("the profile has no values");
    const double room = high > low ? 0.05 * (high - low) : std::max(1.0, 0.05 * std::abs(low));
    return {low - room, high + room};
}

void checkLook(const PlotLook& look)
{
    constexpr int kMost = 8192;
    if (look.width < 200 || look.width > kMost || look.height < 150 || look.height > kMost)
        throw MapError("the plot is not between 200 x 150 and 8192 x 8192 pixels");
}

std::string placeLabel(const Place& place)
{
    constexpr double kStep = 0.1; // degrees
    return latitudeLabel(place.latitude, kStep) + " " + longitudeLabel(place.longitude, kStep);
}

/// Measures first, then draws. Lengths are in pixels, those given as numbers for a picture of a
/// million pixels.
class Plot
{
public:
    Plot(const Profile& profile, const PlotLook& look)
        : profile_(profile), look_(look), sizes_(look.width, look.height), inks_(inksOn(kPaper)),
          labels_(Font::Weight::Regular, 15.5 * sizes_.scale),
          units_(Font::Weight::Bold, 15.5 * sizes_.scale),
          distances_{0.0, profile.length / kMetresPerKilometre}, values_(rangeOf(profile.values)),
          valueTicks_(decimalTicks(values_.low, values_.high, ticksIn(look.height, 62.0, sizes_))),
          distanceTicks_(
              decimalTicks(distances_.low, distances_.high, ticksIn(look.width, 130.0, sizes_)))
    {
        measure();
    }

    Image draw() const
    {
        Canvas canvas(look_.width, look_.height, inks_.paper);
        drawDistances(canvas);
        drawValues(canvas);
        drawCurve(canvas);
        canvas.frame(left_, top_, width_, height_, sizes_.thickness, inks_.strong);
        return std::move(canvas).finish();
    }

private:
    void measure()
    {
        const double scale = sizes_.scale;
        double numbers = 0.0;
        for (const double value : valueTicks_.values)
            numbers = std::max(numbers, labels_.width(numberLabel(value, valueTicks_.step)));
        const double lineHeight = labels_.capitalHeight();
        left_ = roundUp(25.0 * scale + numbers) + sizes_.tick + sizes_.thickness;
        top_ = roundUp(30.0 * scale + lineHeight) + sizes_.thickness;
        firstLine_ = look_.height - roundUp(30.0 * scale + lineHeight); // of the two below
        secondLine_ = look_.height - sizes_.outer;
        width_ = look_.width - left_ - roundUp(36.0 * scale) - sizes_.thickness;
        height_ =
            firstLine_ - roundUp(6.0 * scale + lineHeight) - sizes_.tick - sizes_.thickness - top_;
    }

    double x(double kilometres) const { return distances_.part(kilometres) * width_; }
    double y(double value) const { return (1.0 - values_.part(value)) * height_; }

    void drawDistances(Canvas& canvas) const
    {
        const int bottom = top_ + height_ + sizes_.thickness;
        for (const double value : distanceTicks_.values)
        {
            const int at = left_ + placedTick(x(value), sizes_);
            canvas.fill(at, top_, sizes_.thickness, height_, kGridInk);
            canvas.fill(at, bottom, sizes_.thickness, sizes_.tick, inks_.strong);
            centred(canvas, left_ + x(value), firstLine_, numberLabel(value, distanceTicks_.step));
        }
        const std::string from = placeLabel(profile_.from);
        const std::string to = placeLabel(profile_.to);
        labels_.draw(canvas, left_, secondLine_, from, inks_.faint);
        labels_.draw(canvas, left_ + width_ - labels_.width(to), secondLine_, to, inks_.faint);
        centred(canvas, left_ + 0.5 * width_, secondLine_, "distance / km");
    }

    void centred(Canvas& canvas, double middle, int line, const std::string& text) const
    {
        labels_.draw(canvas, middle - 0.5 * labels_.width(text), line, text, inks_.strong);
    }

    void drawValues(Canvas& canvas) const
    {
        const int outside = left_ - sizes_.thickness - sizes_.tick;
        for (const double value : valueTicks_.values)
        {
            const int at = top_ + placedTick(y(value), sizes_);
            const bool isZero = std::abs(value) < 0.5 * valueTicks_.step;
            canvas.fill(left_, at, width_, sizes_.thickness, isZero ? inks_.faint : kGridInk);
            canvas.fill(outside, at, sizes_.tick, sizes_.thickness, inks_.strong);
            const std::string label = numberLabel(value, valueTicks_.step);
            labels_.draw(canvas, outside - 5.0 * sizes_.scale - labels_.width(label),
                         middledOn(at, labels_, sizes_), label, inks_.strong);
        }
        units_.draw(canvas, left_, top_ - sizes_.thickness - round(8.0 * sizes_.scale), look_.unit,
                    inks_.strong);
    }

    void drawCurve(Canvas& canvas) const
    {
        LineMask mask(width_, height_);
        const Pen pen{2.2 * sizes_.scale, 1.0};
        for (int i = 1; i < profile_.values.width(); ++i)
            if (std::isfinite(profile_.values.at(i - 1, 0)) &&
                std::isfinite(profile_.values.at(i, 0)))
                mask.drawSegment(point(i - 1), point(i), pen);
        for (int row = 0; row < height_; ++row)
            for (int column = 0; column < width_; ++column)
                if (const float cover = mask.at(column, row); cover > 0.0F)
                    canvas.blend(left_ + column, top_ + row, kCurveInk, cover);
    }

    Point point(int sample) const
    {
        return {static_cast<float>(width_ * (sample / (profile_.values.width() - 1.0))),
                static_cast<float>(y(profile_.values.at(sample, 0)))};
    }

    const Profile& profile_;
    const PlotLook& look_;
    const FrameSizes sizes_;
    const Inks inks_;
    const Font labels_;
    const Font units_;
    const Range distances_; // kilometres
    const Range values_;
    const Ticks valueTicks_;
    const Ticks distanceTicks_;
    int left_ = 0; // of the rectangle with the curve
    int top_ = 0;
    int width_ = 0;
    int height_ = 0;
    int firstLine_ = 0; // baselines
    int secondLine_ = 0;
};

} // namespace

Image plotProfile(const Profile& profile, const PlotLook& look)
{
    checkLook(look);
    if (profile.values.isEmpty()) throw MapError("there is no profile to plot");
    return Plot(profile, look).draw();
}

} // namespace Maps
