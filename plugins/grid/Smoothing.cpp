#include "Smoothing.h"

#include "Earth.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numeric>
#include <span>
#include <utility>
#include <vector>

namespace Maps
{

namespace
{

/// The weights of a Gaussian from its middle outwards, not normalised: a symmetric kernel.
std::vector<double> gaussianFromMiddle(double sigmaInPixels, int greatestRadius)
{
    constexpr double kCutInSigmas = 4.0;
    const int radius =
        static_cast<int>(std::min(std::ceil(kCutInSigmas * sigmaInPixels), greatestRadius * 1.0));
    std::vector<double> weights;
    for (int i = 0; i <= radius; ++i)
        weights.push_back(std::exp(-0.5 * (i / sigmaInPixels) * (i / sigmaInPixels)));
    return weights;
}

/// All weights of the symmetric kernel together.
double sum(const std::vector<double>& weights)
{
    return 2.0 * std::accumulate(weights.begin() + 1, weights.end(), 0.5 * weights[0]);
}

/// For each of `count` places, the sum of the weights that fall on places inside.
std::vector<double> weightInside(const std::vector<double>& weights, int count)
{
    std::vector<double> upTo{0.0}; // upTo[n] = weights 1 to n together
    for (std::size_t i = 1; i < weights.size(); ++i) upTo.push_back(upTo.back() + weights[i]);

    const int radius = static_cast<int>(weights.size()) - 1;
    std::vector<double> sums;
    for (int place = 0; place < count; ++place)
    {
        const auto before = static_cast<std::size_t>(std::min(place, radius));
        const auto after = static_cast<std::size_t>(std::min(count - 1 - place, radius));
        sums.push_back(weights[0] + upTo[before] + upTo[after]);
    }
    return sums;
}

/// `row` with `radius` places more at each side: the row again where it wraps, else zeros.
void pad(std::span<const float> row, int radius, bool wraps, std::vector<double>& padded)
{
    const auto reach = static_cast<std::size_t>(radius);
    padded.assign(row.size() + 2 * reach, 0.0);
    std::copy(row.begin(), row.end(), padded.begin() + radius);
    if (!wraps) return;
    // Each place is filled from one a turn further in, which may itself have been filled so.
    for (std::size_t i = row.size() + reach; i < padded.size(); ++i)
        padded[i] = padded[i - row.size()];
    for (std::size_t i = reach; i-- > 0;) padded[i] = padded[i + row.size()];
}

/// The places are the inner loop, so that the compiler can work on several at once.
void convolve(const std::vector<double>& padded, const std::vector<double>& weights,
              std::vector<double>& sums)
{
    const std::size_t radius = weights.size() - 1;
    const double* const middle = padded.data() + radius;
    for (std::size_t i = 0; i < sums.size(); ++i) sums[i] = weights[0] * middle[i];
    for (std::size_t offset = 1; offset <= radius; ++offset)
    {
        const double weight = weights[offset];
        const double* const before = middle - offset;
        const double* const after = middle + offset;
        for (std::size_t i = 0; i < sums.size(); ++i) sums[i] += weight * (before[i] + after[i]);
    }
}

double sigmaInColumns(const Field& field, int row, double sigma)
{
    constexpr double kWidestInDegrees = 180.0;
    const double cosine = std::cos(field.latitude(row) * kRadiansPerDegree);
    const double degrees = cosine * kWidestInDegrees > sigma ? sigma / cosine : kWidestInDegrees;
    return degrees / field.degreesPerColumn();
}

std::vector<float> smoothAlongParallels(const Field& field, double sigma)
{
    const bool wraps = field.region.wraps();
    const int greatestRadius = wraps ? 2 * field.width() : field.width() - 1;

    std::vector<float> smoothed;
    smoothed.reserve(field.values.samples().size());
    std::vector<double> padded;
    std::vector<double> sums(static_cast<std::size_t>(field.width()));
    for (int row = 0; row < field.height(); ++row)
    {
        const std::vector<double> weights =
            gaussianFromMiddle(sigmaInColumns(field, row, sigma), greatestRadius);
        const int radius = static_cast<int>(weights.size()) - 1;
        pad(field.values.row(row), radius, wraps, padded);
        convolve(padded, weights, sums);
        const std::vector<double> totals = wraps ? std::vector<double>(sums.size(), sum(weights))
                                                 : weightInside(weights, field.width());
        for (std::size_t i = 0; i < sums.size(); ++i)
            smoothed.push_back(static_cast<float>(sums[i] / totals[i]));
    }
    return smoothed;
}

std::vector<float> smoothAlongMeridians(const std::vector<float>& values, int width, int height,
                                        double sigmaInRows)
{
    const std::vector<double> weights = gaussianFromMiddle(sigmaInRows, height - 1);
    const std::vector<double> totals = weightInside(weights, height);
    const int radius = static_cast<int>(weights.size()) - 1;
    const auto length = static_cast<std::size_t>(width);

    std::vector<float> smoothed;
    smoothed.reserve(values.size());
    std::vector<double> sums(length);
    for (int row = 0; row < height; ++row)
    {
        std::fill(sums.begin(), sums.end(), 0.0);
        const int last = std::min(height - 1, row + radius);
        for (int other = std::max(0, row - radius); other <= last; ++other)
        {
            const double weight = weights[static_cast<std::size_t>(std::abs(other - row))];
            const float* const line = values.data() + static_cast<std::size_t>(other) * length;
            for (std::size_t i = 0; i < length; ++i) sums[i] += weight * double{line[i]};
        }
        const double total = totals[static_cast<std::size_t>(row)];
        for (const double sum : sums) smoothed.push_back(static_cast<float>(sum / total));
    }
    return smoothed;
}

} // namespace

Field smooth(const Field& field, double sigma)
{
    if (!(sigma >= 0.0 && sigma <= kGreatestSigma))
        throw MapError("the smoothing is not between 0 and 30 degrees");
    if (sigma == 0.0 || field.values.isEmpty()) return field;

    const std::vector<float> alongParallels = smoothAlongParallels(field, sigma);
    return {field.region,
            Raster<float>(field.width(), field.height(),
                          smoothAlongMeridians(alongParallels, field.width(), field.height(),
                                               sigma / field.degreesPerRow()))};
}

} // namespace Maps
