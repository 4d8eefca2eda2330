#include "Volume.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace Volumes
{
namespace
{

/// The two voxels on either side of a place along one axis, and how far it is from the first to
/// the second.
struct Between
{
    int first = 0;
    int second = 0;
    double part = 0.0;
    bool isInside = false;
};

Between between(double place, int count)
{
    // A place that was computed for the outer voxel may miss it by a rounding.
    constexpr double kSlack = 1e-6;
    if (!(place >= -kSlack && place <= count - 1 + kSlack)) return {};
    const double inside = std::clamp(place, 0.0, count - 1.0);
    const int first = std::min(static_cast<int>(inside), std::max(0, count - 2));
    return {first, std::min(first + 1, count - 1), inside - first, true};
}

double mix(double from, double to, double part)
{
    return from + part * (to - from);
}

} // namespace

std::size_t voxelCount(const Counts& counts)
{
    return static_cast<std::size_t>(counts[0]) * static_cast<std::size_t>(counts[1]) *
           static_cast<std::size_t>(counts[2]);
}

Volume::Volume(const Counts& counts, const Affine& toWorld, std::vector<float> samples)
    : counts_(counts), toWorld_(toWorld)
{
    if (std::ranges::any_of(counts, [](int count) { return count <= 0; }) ||
        samples.size() != voxelCount(counts))
        throw MapError("a volume needs a sample for each voxel");
    if (!toWorld.isInvertible()) throw MapError("the voxels of a volume have no size");
    samples_ = std::make_shared<const std::vector<float>>(std::move(samples));
}

Vector Volume::spacing() const
{
    return {length(toWorld_.x), length(toWorld_.y), length(toWorld_.z)};
}

Box Volume::extent() const
{
    constexpr double kFar = std::numeric_limits<double>::infinity();
    Box box{{kFar, kFar, kFar}, {-kFar, -kFar, -kFar}};
    for (const int i : {0, counts_[0] - 1})
        for (const int j : {0, counts_[1] - 1})
            for (const int k : {0, counts_[2] - 1})
            {
                const Vector corner = toWorld_.place({i * 1.0, j * 1.0, k * 1.0});
                box.low = {std::min(box.low.x, corner.x), std::min(box.low.y, corner.y),
                           std::min(box.low.z, corner.z)};
                box.high = {std::max(box.high.x, corner.x), std::max(box.high.y, corner.y),
                            std::max(box.high.z, corner.z)};
            }
    return box;
}

float Volume::between(const Vector& place) const
{
    const Between x = Volumes::between(place.x, counts_[0]);
    const Between y = Volumes::between(place.y, counts_[1]);
    const Between z = Volumes::between(place.z, counts_[2]);
    if (!x.isInside || !y.isInside || !z.isInside) return std::numeric_limits<float>::quiet_NaN();
    const auto alongX = [&](int j, int k) {
        return mix(at(x.first, j, k), at(x.second, j, k), x.part);
    };
    const auto inPlane = [&](int k) {
        return mix(alongX(y.first, k), alongX(y.second, k), y.part);
    };
    return static_cast<float>(mix(inPlane(z.first), inPlane(z.second), z.part));
}

bool operator==(const Volume& left, const Volume& right)
{
    if (left.counts_ != right.counts_ || left.toWorld_ != right.toWorld_) return false;
    return left.samples_ == right.samples_ || *left.samples_ == *right.samples_;
}

} // namespace Volumes
