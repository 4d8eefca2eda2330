#pragma once

#include "Canvas.h"

#include <memory>
#include <string>

namespace Maps
{

/// An outline font at one size, drawn with FreeType. Neither copied nor moved; one thread at a
/// time.
class Font
{
public:
    enum class Weight
    {
        Regular,
        Bold
    };

    /// Opens DejaVu Sans where distributions of Linux install it.
    /// \param size  pixels from a line of text to the next, about 1.4 times a capital's height
    /// \throws MapError which names the font and its package, if it is not installed.
    Font(Weight weight, double size);
    ~Font();
    Font(const Font&) = delete;
    Font& operator=(const Font&) = delete;

    /// The width of `text` (UTF-8) in pixels.
    double width(const std::string& text) const;

    double capitalHeight() const; ///< of an H in pixels; digits are as high

    /// Draws `text` (UTF-8) from `x` rightwards, standing on the line `baseline`, in pixels.
    void draw(Canvas& canvas, double x, int baseline, const std::string& text,
              const Rgb& colour) const;

private:
    struct Face;
    std::unique_ptr<Face> face_;
};

} // namespace Maps
