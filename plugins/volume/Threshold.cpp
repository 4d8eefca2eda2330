#include "Threshold.h"

#include <cmath>
#include <utility>

namespace Volumes
{

Volume threshold(const Volume& volume, double low, double high, double outside)
{
    if (!(std::isfinite(low) && std::isfinite(high) && low <= high))
        throw MapError("the range of the threshold is empty or not finite");
    if (!std::isfinite(static_cast<float>(outside)))
        throw MapError("what stands outside the threshold is not a finite number");
    if (volume.isEmpty()) return volume;

    std::vector<float> samples(volume.samples().begin(), volume.samples().end());
    for (float& sample : samples)
        if (!(sample >= low && sample <= high)) sample = static_cast<float>(outside);
    return {volume.counts(), volume.toWorld(), std::move(samples)};
}

} // namespace Volumes
