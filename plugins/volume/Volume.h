#pragma once

#include "Affine.h"

#include <plugins/grid/MapError.h>

#include <array>
#include <cstddef>
#include <memory>
#include <span>
#include <vector>

namespace Volumes
{

using Maps::MapError;

/// How many voxels there are along each axis of a volume.
using Counts = std::array<int, 3>;

/// \pre No count is negative.
std::size_t voxelCount(const Counts& counts);

/// The most voxels that a volume may have, which are 2 GiB.
inline constexpr std::size_t kMostVoxels = std::size_t{1} << 29U;

/// A box, as a volume fills it.
struct Box
{
    Vector low;
    Vector high;
};

/// A quantity at the points of a lattice, and where these are in a head: a handle on shared samples
/// that nobody changes any more.
///
/// A voxel (i, j, k) stands at `toWorld().place({i, j, k})`, in millimetres: x to the right of the
/// person, y to the front, z upwards (RAS). Its value stands in its middle. i runs fastest.
///
/// Cheap to copy. Equal if lattice and samples are. A default volume is empty, 0 x 0 x 0.
/// Invariant: there is a finite sample for each voxel, and the lattice has three dimensions.
class Volume
{
public:
    Volume() = default;

    /// Takes the samples over.
    /// \throws MapError if their number is not that of the voxels, a count is not positive, or
    /// `toWorld` is not invertible.
    Volume(const Counts& counts, const Affine& toWorld, std::vector<float> samples);

    const Counts& counts() const { return counts_; }
    const Affine& toWorld() const { return toWorld_; }
    bool isEmpty() const { return !samples_; }

    /// All samples. Valid as long as any copy of this handle lives.
    std::span<const float> samples() const
    {
        return samples_ ? std::span<const float>(*samples_) : std::span<const float>();
    }

    /// \pre Each index is that of a voxel, here and below.
    float at(int i, int j, int k) const { return (*samples_)[index(i, j, k)]; }

    std::size_t index(int i, int j, int k) const
    {
        const auto rows = static_cast<std::size_t>(counts_[1]);
        const auto row = static_cast<std::size_t>(k) * rows + static_cast<std::size_t>(j);
        return row * static_cast<std::size_t>(counts_[0]) + static_cast<std::size_t>(i);
    }

    /// Millimetres from a voxel to the next along each axis of the lattice.
    Vector spacing() const;

    /// The smallest box, along the axes of the world, with the middles of all voxels; millimetres.
    Box extent() const;

    /// The value at a place of the lattice, by trilinear interpolation between eight voxels.
    /// \return NaN for what lies beyond the middles of the outer voxels.
    float between(const Vector& place) const;

    friend bool operator==(const Volume& left, const Volume& right);

private:
    Counts counts_{};
    Affine toWorld_;
    std::shared_ptr<const std::vector<float>> samples_; // null if and only if 0 x 0 x 0
};

} // namespace Volumes
