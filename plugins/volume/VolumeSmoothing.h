#pragma once

#include "Volume.h"

namespace Volumes
{

/// The widest Gaussian, in millimetres.
inline constexpr double kGreatestSigma = 50.0;

/// The same, in voxels along each axis.
inline constexpr double kMostVoxelsInSigma = 1000.0;

/// Smooths with a Gaussian of `sigma` millimetres, along each axis of the lattice in turn; cut off
/// at four sigma. Where the axes are not at right angles, it is as skew as they are.
///
/// At each side the volume goes on as its mirror image. So the sum of all values stays, and a
/// constant as well, up to rounding. Sigma 0 answers the volume itself.
/// \throws MapError unless 0 <= sigma <= kGreatestSigma, and sigma is at most kMostVoxelsInSigma.
Volume smooth(const Volume& volume, double sigma);

} // namespace Volumes
