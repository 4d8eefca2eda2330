#pragma once

#include "Canvas.h"
#include "Caption.h"
#include "ColourMap.h"
#include "Font.h"
#include "Ticks.h"

namespace Maps
{

/// The colours of what stands around a picture.
struct Inks
{
    Rgb paper;
    Rgb strong;
    Rgb faint;
};

/// Dark inks on light paper, light ones on dark paper.
Inks inksOn(const Rgb& paper);

/// How large things around a picture are; they grow with it. What is told for a picture of a
/// million pixels is multiplied by the scale.
struct FrameSizes
{
    FrameSizes(int width, int height);

    double scale;
    int outer;     ///< pixels that are left free around everything
    int thickness; ///< of lines
    int tick;      ///< the length of those outside a frame
};

int roundUp(double value);
int round(double value);

/// The texts above a picture. One that would be wider than the picture is set in smaller letters.
class CaptionBlock
{
public:
    CaptionBlock(const Caption& caption, const FrameSizes& sizes, int room);

    /// The row on which a picture begins below the texts and a line around it.
    int bottom() const { return bottom_; }

    void draw(Canvas& canvas, int left, const Inks& inks) const;

private:
    struct Line
    {
        Line(std::string words, Font::Weight weight, double size, double room);

        std::string text;
        Font font;
        double height; // of a capital
    };

    const Line title_;
    const Line subtitle_;
    const int titleLine_; // baselines
    const int subtitleLine_;
    const int bottom_;
};

/// A bar with the colours of a map from high to low, with numbers, and the unit above it.
class ColourBar
{
public:
    /// \param height of the bar, pixels
    ColourBar(const ColourMap& colours, std::string unit, int height, const FrameSizes& sizes);

    int gap() const { return gap_; }     ///< pixels that belong between a picture and the bar
    int width() const { return width_; } ///< of the bar and its numbers

    void draw(Canvas& canvas, int left, int top, const Inks& inks) const;

private:
    const ColourMap colours_;
    const std::string unit_;
    const int height_;
    const FrameSizes sizes_;
    const Font labels_;
    const Font units_;
    const Ticks numbers_;
    const int gap_;
    const int barWidth_;
    int width_ = 0;
};

/// How many ticks fit on a side, at least one.
/// \param distance between two, in pixels for a picture of a million
double ticksIn(int length, double distance, const FrameSizes& sizes);

/// The line that is `thickness` wide and centred at `offset` pixels into a side; a tick on the very
/// edge is drawn over the frame, not beyond it.
int placedTick(double offset, const FrameSizes& sizes);

/// The baseline of a label whose middle is level with a tick at `y`.
int middledOn(int y, const Font& font, const FrameSizes& sizes);

} // namespace Maps
