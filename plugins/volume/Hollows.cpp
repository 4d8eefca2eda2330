#include "Hollows.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace Volumes
{
namespace
{

/// Numbers in rows, blurred in place; each row, and each column, by running sums.
class Blur
{
public:
    Blur(std::vector<float>& numbers, int width, int height)
        : numbers_(numbers), width_(static_cast<std::size_t>(width)),
          height_(static_cast<std::size_t>(height))
    {
    }

    /// Three boxes of 2 radius + 1 pixels, which have the variance radius (radius + 1) together.
    void apply(std::size_t radius)
    {
        for (int box = 0; box < 3; ++box)
        {
            for (std::size_t y = 0; y < height_; ++y) line(y * width_, 1, width_, radius);
            for (std::size_t x = 0; x < width_; ++x) line(x, width_, height_, radius);
        }
    }

private:
    /// The sum over a box is that of the one before, with what enters and without what leaves.
    /// Beyond the sides are zeros.
    void line(std::size_t begin, std::size_t step, std::size_t count, std::size_t radius)
    {
        before_.resize(count);
        for (std::size_t i = 0; i < count; ++i) before_[i] = numbers_[begin + i * step];
        const double scale = 1.0 / (2.0 * static_cast<double>(radius) + 1.0);
        double sum = 0.0;
        for (std::size_t i = 0; i < std::min(radius, count); ++i) sum += before_[i];
        for (std::size_t i = 0; i < count; ++i)
        {
            if (i + radius < count) sum += before_[i + radius];
            if (i > radius) sum -= before_[i - radius - 1];
            numbers_[begin + i * step] = static_cast<float>(scale * sum);
        }
    }

    std::vector<float>& numbers_;
    const std::size_t width_;
    const std::size_t height_;
    std::vector<float> before_;
};

std::size_t radiusFor(double sigmaInPixels)
{
    const double radius = std::sqrt(sigmaInPixels * sigmaInPixels + 0.25) - 0.5;
    return static_cast<std::size_t>(std::clamp(radius, 1.0, 1000.0));
}

} // namespace

std::vector<float> hollows(const Fragments& fragments, double sigma)
{
    const std::size_t pixels = fragments.depths.size();
    std::vector<float> means(pixels, 0.0F);
    std::vector<float> weights(pixels, 0.0F);
    for (std::size_t i = 0; i < pixels; ++i)
        if (fragments.isCovered(i))
        {
            means[i] = fragments.depths[i];
            weights[i] = 1.0F;
        }
    const std::size_t radius = radiusFor(sigma * fragments.pixelsPerMillimetre);
    Blur(means, fragments.width, fragments.height).apply(radius);
    Blur(weights, fragments.width, fragments.height).apply(radius);
    for (std::size_t i = 0; i < pixels; ++i)
        means[i] = fragments.isCovered(i)
                       ? std::max(0.0F, means[i] / weights[i] - fragments.depths[i])
                       : 0.0F;
    return means;
}

} // namespace Volumes
