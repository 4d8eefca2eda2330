#include "Legend.h"

#include "Canvas.h"
#include "Font.h"
#include "Ticks.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace Maps
{

namespace
{

constexpr Rgb kPaper{255, 255, 255};
constexpr Rgb kInk{28, 30, 36};
constexpr Rgb kFaintInk{92, 96, 106};

int roundUp(double value)
{
    return static_cast<int>(std::ceil(value));
}

int round(double value)
{
    return static_cast<int>(std::lround(value));
}

/// A text that is no wider than `room`, in a smaller size if need be.
struct Line
{
    Line(std::string words, Font::Weight weight, double size, double room)
        : text(std::move(words)), font(weight, fittingSize(text, weight, size, room)),
          height(text.empty() ? 0.0 : font.capitalHeight())
    {
    }

    static double fittingSize(const std::string& text, Font::Weight weight, double size,
                              double room)
    {
        const double width = Font(weight, size).width(text);
        return width > room ? std::max(1.0, size * room / width) : size;
    }

    std::string text;
    Font font;
    double height; // of a capital
};

/// Measures first, then draws from the outside inwards. Lengths are in pixels, those given as
/// numbers for a map of a million pixels.
class Frame
{
public:
    Frame(const Image& map, const Region& region, const ColourMap& colours, const Caption& caption)
        : map_(map), region_(region), colours_(colours), scale_(scaleFor(map)),
          thickness_(std::max(1, round(1.4 * scale_))), tick_(round(7.0 * scale_)),
          labels_(Font::Weight::Regular, 15.5 * scale_), units_(Font::Weight::Bold, 15.5 * scale_),
          title_(caption.title, Font::Weight::Bold, 23.0 * scale_, map.width()),
          subtitle_(caption.subtitle, Font::Weight::Regular, 15.5 * scale_, map.width()),
          latitudes_(degreeTicks(region.south, region.north, ticksIn(map.height(), 74.0))),
          longitudes_(degreeTicks(region.west, region.west + region.longitudeSpan(),
                                  ticksIn(map.width(), 100.0))),
          unit_(caption.unit),
          numbers_(decimalTicks(colours.low(), colours.high(), ticksIn(map.height(), 52.0)))
    {
        measure();
    }

    Image draw() const
    {
        Canvas canvas(width_, height_, kPaper);
        drawCaption(canvas);
        canvas.paste(left_, top_, map_);
        canvas.frame(left_, top_, map_.width(), map_.height(), thickness_, kInk);
        drawLatitudes(canvas);
        drawLongitudes(canvas);
        drawBar(canvas);
        return std::move(canvas).finish();
    }

private:
    static double scaleFor(const Image& map)
    {
        return std::clamp(std::sqrt(1e-6 * map.width() * map.height()), 0.6, 4.0);
    }

    double ticksIn(int length, double distance) const
    {
        return std::max(1.0, length / (distance * scale_));
    }

    void measure()
    {
        const double outer = 20.0 * scale_;
        double latitudeWidth = 0.0;
        for (const double value : latitudes_.values)
            latitudeWidth =
                std::max(latitudeWidth, labels_.width(latitudeLabel(value, latitudes_.step)));
        double numberWidth = labels_.width(unit_);
        for (const double value : numbers_.values)
            numberWidth = std::max(numberWidth, labels_.width(numberLabel(value, numbers_.step)));

        left_ = roundUp(outer + latitudeWidth + 5.0 * scale_) + tick_ + thickness_;
        titleLine_ = round(outer + title_.height);
        subtitleLine_ =
            titleLine_ + (subtitle_.text.empty() ? 0 : round(subtitle_.height + 12.0 * scale_));
        top_ = subtitleLine_ + round(20.0 * scale_) + thickness_;
        barLeft_ = left_ + map_.width() + 2 * thickness_ + round(34.0 * scale_);
        barWidth_ = round(20.0 * scale_);
        width_ =
            barLeft_ + barWidth_ + thickness_ + tick_ + roundUp(5.0 * scale_ + numberWidth + outer);
        height_ = top_ + map_.height() + thickness_ + tick_ +
                  roundUp(6.0 * scale_ + labels_.capitalHeight() + outer);
    }

    void drawCaption(Canvas& canvas) const
    {
        title_.font.draw(canvas, left_, titleLine_, title_.text, kInk);
        subtitle_.font.draw(canvas, left_, subtitleLine_, subtitle_.text, kFaintInk);
    }

    /// The line that is `thickness_` wide and centred at `offset` pixels into a side; a tick on the
    /// very edge is drawn over the frame, not beyond it.
    int placed(double offset) const { return round(offset - 0.5 * thickness_); }

    void drawLatitudes(Canvas& canvas) const
    {
        const double perDegree = map_.height() / region_.latitudeSpan();
        const int right = left_ + map_.width() + thickness_;
        for (const double value : latitudes_.values)
        {
            const int y = top_ + placed((region_.north - value) * perDegree);
            canvas.fill(left_ - thickness_ - tick_, y, tick_, thickness_, kInk);
            canvas.fill(right, y, tick_ / 2, thickness_, kInk);
            const std::string label = latitudeLabel(value, latitudes_.step);
            const double end = left_ - thickness_ - tick_ - 5.0 * scale_;
            labels_.draw(canvas, end - labels_.width(label), middledOn(y), label, kInk);
        }
    }

    void drawLongitudes(Canvas& canvas) const
    {
        const double perDegree = map_.width() / region_.longitudeSpan();
        const int bottom = top_ + map_.height() + thickness_;
        for (const double value : longitudes_.values)
        {
            const double offset = (value - region_.west) * perDegree;
            const int x = left_ + placed(offset);
            canvas.fill(x, bottom, thickness_, tick_, kInk);
            canvas.fill(x, top_ - thickness_ - tick_ / 2, thickness_, tick_ / 2, kInk);
            const std::string label = longitudeLabel(value, longitudes_.step);
            const int baseline = bottom + tick_ + round(6.0 * scale_ + labels_.capitalHeight());
            labels_.draw(canvas, left_ + offset - 0.5 * labels_.width(label), baseline, label,
                         kInk);
        }
    }

    void drawBar(Canvas& canvas) const
    {
        const double perUnit = map_.height() / (colours_.high() - colours_.low());
        for (int row = 0; row < map_.height(); ++row)
        {
            const double metres = colours_.high() - (row + 0.5) / perUnit;
            canvas.fill(barLeft_, top_ + row, barWidth_, 1, encode(colours_.at(metres)));
        }
        canvas.frame(barLeft_, top_, barWidth_, map_.height(), thickness_, kInk);

        const int right = barLeft_ + barWidth_ + thickness_;
        for (const double value : numbers_.values)
        {
            const int y = top_ + placed((colours_.high() - value) * perUnit);
            canvas.fill(right, y, tick_, thickness_, kInk);
            labels_.draw(canvas, right + tick_ + 5.0 * scale_, middledOn(y),
                         numberLabel(value, numbers_.step), kInk);
        }
        const double middle = barLeft_ + 0.5 * barWidth_;
        units_.draw(canvas, middle - 0.5 * units_.width(unit_),
                    top_ - thickness_ - round(8.0 * scale_), unit_, kInk);
    }

    /// The baseline of a label whose middle is level with a tick at `y`.
    int middledOn(int y) const
    {
        return round(y + 0.5 * thickness_ + 0.5 * labels_.capitalHeight());
    }

    const Image& map_;
    const Region& region_;
    const ColourMap& colours_;
    double scale_;
    int thickness_;
    int tick_;
    Font labels_;
    Font units_;
    Line title_;
    Line subtitle_;
    Ticks latitudes_;
    Ticks longitudes_;
    std::string unit_;
    Ticks numbers_;
    int left_ = 0; // the map's upper left corner in the picture
    int top_ = 0;
    int titleLine_ = 0; // baselines
    int subtitleLine_ = 0;
    int barLeft_ = 0;
    int barWidth_ = 0;
    int width_ = 0;
    int height_ = 0;
};

} // namespace

Image frameMap(const Image& map, const Region& region, const ColourMap& colours,
               const Caption& caption)
{
    checkRegion(region);
    if (map.isEmpty()) throw MapError("there is no map to frame");
    return Frame(map, region, colours, caption).draw();
}

} // namespace Maps
