#include "VolumeSmoothing.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <numeric>
#include <utility>

namespace Volumes
{
namespace
{

/// The weights of a Gaussian from its middle outwards, which are 1 together, the middle counted
/// once and the others twice.
std::vector<float> gaussianFromMiddle(double sigmaInVoxels)
{
    constexpr double kCutInSigmas = 4.0;
    const int radius = static_cast<int>(std::ceil(kCutInSigmas * sigmaInVoxels));
    std::vector<double> weights;
    weights.reserve(static_cast<std::size_t>(radius) + 1);
    for (int i = 0; i <= radius; ++i)
        weights.push_back(std::exp(-0.5 * (i / sigmaInVoxels) * (i / sigmaInVoxels)));
    const double sum = 2.0 * std::accumulate(weights.begin() + 1, weights.end(), 0.5 * weights[0]);
    std::vector<float> normalised;
    normalised.reserve(weights.size());
    for (const double weight : weights) normalised.push_back(static_cast<float>(weight / sum));
    return normalised;
}

/// The voxel that is seen at a place which may be behind the mirrors; each mirror stands behind the
/// outer half of the outer voxel.
std::size_t mirrored(int place, int count)
{
    const int period = 2 * count;
    const int turned = (place % period + period) % period;
    return static_cast<std::size_t>(turned < count ? turned : period - 1 - turned);
}

/// Smooths along one axis of a lattice that is told as three nested loops: `outer` times `count`
/// voxels along the axis, each of `inner` neighbours in memory. The neighbours are the innermost
/// loop, so that the compiler can work on several at once.
std::vector<float> smoothAlong(const std::vector<float>& samples, std::size_t outer, int count,
                               std::size_t inner, const std::vector<float>& weights)
{
    const int radius = static_cast<int>(weights.size()) - 1;
    const std::size_t perPlane = static_cast<std::size_t>(count) * inner;
    std::vector<float> smoothed(samples.size(), 0.0F);
    for (std::size_t plane = 0; plane < outer; ++plane)
        for (int place = 0; place < count; ++place)
        {
            float* const target =
                smoothed.data() + plane * perPlane + static_cast<std::size_t>(place) * inner;
            for (int offset = -radius; offset <= radius; ++offset)
            {
                const float weight = weights[static_cast<std::size_t>(std::abs(offset))];
                const float* const source =
                    samples.data() + plane * perPlane + mirrored(place + offset, count) * inner;
                for (std::size_t i = 0; i < inner; ++i) target[i] += weight * source[i];
            }
        }
    return smoothed;
}

} // namespace

Volume smooth(const Volume& volume, double sigma)
{
    if (!(sigma >= 0.0 && sigma <= kGreatestSigma))
        throw MapError("the smoothing is not between 0 and 50 mm");
    if (sigma == 0.0 || volume.isEmpty()) return volume;

    const Vector spacing = volume.spacing();
    if (sigma > kMostVoxelsInSigma * std::min({spacing.x, spacing.y, spacing.z}))
        throw MapError("the smoothing is wider than 1000 voxels");
    const auto [columns, rows, slices] = volume.counts();
    const std::size_t perRow = static_cast<std::size_t>(columns);
    const std::size_t perSlice = perRow * static_cast<std::size_t>(rows);
    const std::size_t allRows = perSlice / perRow * static_cast<std::size_t>(slices);

    std::vector<float> samples(volume.samples().begin(), volume.samples().end());
    samples = smoothAlong(samples, allRows, columns, 1, gaussianFromMiddle(sigma / spacing.x));
    samples = smoothAlong(samples, static_cast<std::size_t>(slices), rows, perRow,
                          gaussianFromMiddle(sigma / spacing.y));
    samples = smoothAlong(samples, 1, slices, perSlice, gaussianFromMiddle(sigma / spacing.z));
    return {volume.counts(), volume.toWorld(), std::move(samples)};
}

} // namespace Volumes
