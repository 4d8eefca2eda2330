#pragma once

#include "Fragments.h"

#include <vector>

namespace Volumes
{

/// How far each pixel lies behind the mean of the covered ones around it, in millimetres; not
/// negative, 0 where nothing is.
/// \param sigma of the Gaussian by which the mean is weighted, in millimetres, near enough (three
/// boxes stand for it)
std::vector<float> hollows(const Fragments& fragments, double sigma);

} // namespace Volumes
