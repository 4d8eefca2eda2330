#pragma once

#include "MapError.h"

#include <cstddef>
#include <memory>
#include <span>
#include <utility>
#include <vector>

namespace Maps
{

/// How many samples a rectangle has. \pre No side is negative.
inline std::size_t sampleCount(int width, int height)
{
    return static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
}

/// A rectangle of samples, row after row: a handle on shared samples that nobody changes any more.
///
/// A copy costs one counted reference, so a raster may travel as a value through a network, and
/// several threads may read the same samples. A default raster is empty, 0 x 0.
/// Invariant: there are exactly width x height samples.
template <class Sample>
class Raster
{
public:
    Raster() = default;

    /// Takes the samples over.
    /// \throws MapError if their number is not `width` x `height`, or a side is not positive.
    Raster(int width, int height, std::vector<Sample> samples);

    int width() const { return width_; }
    int height() const { return height_; }
    bool isEmpty() const { return !samples_; }

    /// All samples, first row first. Valid as long as any copy of this handle lives.
    std::span<const Sample> samples() const
    {
        return samples_ ? std::span<const Sample>(*samples_) : std::span<const Sample>();
    }

    /// \pre 0 <= row < height(), here and below.
    std::span<const Sample> row(int row) const
    {
        const auto length = static_cast<std::size_t>(width_);
        return samples().subspan(static_cast<std::size_t>(row) * length, length);
    }

    /// \pre 0 <= column < width().
    const Sample& at(int column, int row) const
    {
        return this->row(row)[static_cast<std::size_t>(column)];
    }

    /// Equal shape and equal samples. Handles on the same samples are found equal at once, others
    /// by comparing sample by sample: a new raster that came out the same is no change.
    friend bool operator==(const Raster& left, const Raster& right)
    {
        if (left.width_ != right.width_ || left.height_ != right.height_) return false;
        return left.samples_ == right.samples_ || *left.samples_ == *right.samples_;
    }

private:
    int width_ = 0;
    int height_ = 0;
    std::shared_ptr<const std::vector<Sample>> samples_; // null if and only if 0 x 0
};

template <class Sample>
Raster<Sample>::Raster(int width, int height, std::vector<Sample> samples)
    : width_(width), height_(height)
{
    if (width <= 0 || height <= 0 || samples.size() != sampleCount(width, height))
        throw MapError("a raster needs width x height samples");
    samples_ = std::make_shared<const std::vector<Sample>>(std::move(samples));
}

} // namespace Maps
