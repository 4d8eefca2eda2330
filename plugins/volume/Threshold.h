#pragma once

#include "Volume.h"

namespace Volumes
{

/// The volume with `outside` in place of each value that is not in [low, high].
/// \throws MapError unless all three are finite, and low <= high.
Volume threshold(const Volume& volume, double low, double high, double outside);

} // namespace Volumes
