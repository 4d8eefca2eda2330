#include "FrameParts.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace Maps
{
namespace
{

constexpr double kLabelSize = 15.5; // of letters, for a picture of a million pixels
constexpr double kTitleSize = 23.0;

double fittingSize(const std::string& text, Font::Weight weight, double size, double room)
{
    const double width = Font(weight, size).width(text);
    return width > room ? std::max(1.0, size * room / width) : size;
}

} // namespace

Inks inksOn(const Rgb& paper)
{
    constexpr double kMiddle = 0.6;
    if (toOklab(decode(paper)).lightness > kMiddle) return {paper, {28, 30, 36}, {92, 96, 106}};
    return {paper, {232, 234, 240}, {164, 168, 178}};
}

FrameSizes::FrameSizes(int width, int height)
    : scale(std::clamp(std::sqrt(1e-6 * width * height), 0.6, 4.0)), outer(round(20.0 * scale)),
      thickness(std::max(1, round(1.4 * scale))), tick(round(7.0 * scale))
{
}

int roundUp(double value)
{
    return static_cast<int>(std::ceil(value));
}

int round(double value)
{
    return static_cast<int>(std::lround(value));
}

CaptionBlock::Line::Line(std::string words, Font::Weight weight, double size, double room)
    : text(std::move(words)), font(weight, fittingSize(text, weight, size, room)),
      height(text.empty() ? 0.0 : font.capitalHeight())
{
}

CaptionBlock::CaptionBlock(const Caption& caption, const FrameSizes& sizes, int room)
    : title_(caption.title, Font::Weight::Bold, kTitleSize * sizes.scale, room),
      subtitle_(caption.subtitle, Font::Weight::Regular, kLabelSize * sizes.scale, room),
      titleLine_(round(20.0 * sizes.scale + title_.height)),
      subtitleLine_(titleLine_ +
                    (subtitle_.text.empty() ? 0 : round(subtitle_.height + 12.0 * sizes.scale))),
      bottom_(subtitleLine_ + round(20.0 * sizes.scale) + sizes.thickness)
{
}

void CaptionBlock::draw(Canvas& canvas, int left, const Inks& inks) const
{
    title_.font.draw(canvas, left, titleLine_, title_.text, inks.strong);
    subtitle_.font.draw(canvas, left, subtitleLine_, subtitle_.text, inks.faint);
}

ColourBar::ColourBar(const ColourMap& colours, std::string unit, int height,
                     const FrameSizes& sizes)
    : colours_(colours), unit_(std::move(unit)), height_(height), sizes_(sizes),
      labels_(Font::Weight::Regular, kLabelSize * sizes.scale),
      units_(Font::Weight::Bold, kLabelSize * sizes.scale),
      numbers_(decimalTicks(colours.low(), colours.high(), ticksIn(height, 52.0, sizes))),
      gap_(2 * sizes.thickness + round(34.0 * sizes.scale)), barWidth_(round(20.0 * sizes.scale))
{
    double numbers = labels_.width(unit_);
    for (const double value : numbers_.values)
        numbers = std::max(numbers, labels_.width(numberLabel(value, numbers_.step)));
    width_ = barWidth_ + sizes.thickness + sizes.tick + roundUp(25.0 * sizes.scale + numbers);
}

void ColourBar::draw(Canvas& canvas, int left, int top, const Inks& inks) const
{
    const double perUnit = height_ / (colours_.high() - colours_.low());
    for (int row = 0; row < height_; ++row)
    {
        const double value = colours_.high() - (row + 0.5) / perUnit;
        canvas.fill(left, top + row, barWidth_, 1, encode(colours_.at(value)));
    }
    canvas.frame(left, top, barWidth_, height_, sizes_.thickness, inks.strong);

    const int right = left + barWidth_ + sizes_.thickness;
    for (const double value : numbers_.values)
    {
        const int y = top + placedTick((colours_.high() - value) * perUnit, sizes_);
        canvas.fill(right, y, sizes_.tick, sizes_.thickness, inks.strong);
        labels_.draw(canvas, right + sizes_.tick + 5.0 * sizes_.scale,
                     middledOn(y, labels_, sizes_), numberLabel(value, numbers_.step), inks.strong);
    }
    const double middle = left + 0.5 * barWidth_;
    units_.draw(canvas, middle - 0.5 * units_.width(unit_),
                top - sizes_.thickness - round(8.0 * sizes_.scale), unit_, inks.strong);
}

double ticksIn(int length, double distance, const FrameSizes& sizes)
{
    return std::max(1.0, length / (distance * sizes.scale));
}

int placedTick(double offset, const FrameSizes& sizes)
{
    return round(offset - 0.5 * sizes.thickness);
}

int middledOn(int y, const Font& font, const FrameSizes& sizes)
{
    return round(y + 0.5 * sizes.thickness + 0.5 * font.capitalHeight());
}

} // namespace Maps
