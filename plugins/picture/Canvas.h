#pragma once

#include "Image.h"

#include <vector>

namespace Maps
{

/// A picture that is drawn on. Whatever lies beyond its edges is cut off.
///
/// It mixes stored values, not light: dark letters keep their weight on a bright ground that way.
class Canvas
{
public:
    /// \pre width and height are positive.
    Canvas(int width, int height, const Rgb& background);

    int width() const { return width_; }
    int height() const { return height_; }

    /// Covers a pixel to the part `cover`, 0 to 1.
    void blend(int x, int y, const Rgb& colour, double cover);

    /// Fills the pixels from (x, y), `width` to the right and `height` downwards.
    void fill(int x, int y, int width, int height, const Rgb& colour);

    /// Draws a frame of `thickness` pixels around the rectangle, outside it.
    void frame(int x, int y, int width, int height, int thickness, const Rgb& colour);

    /// Copies a picture with its upper left corner at (x, y).
    void paste(int x, int y, const Image& image);

    /// The picture as it stands. \post The canvas is used up.
    Image finish() &&;

private:
    Rgb* pixel(int x, int y); ///< null beyond the edges

    int width_;
    int height_;
    std::vector<Rgb> pixels_;
};

} // namespace Maps
