#pragma once

#include "Field.h"

namespace Maps
{

/// The widest Gaussian, in degrees.
inline constexpr double kGreatestSigma = 30.0;

/// Smooths with a Gaussian of `sigma` degrees of great circle, along each parallel first, then
/// along each meridian; cut off at four sigma.
///
/// A degree of longitude shrinks with the cosine of the latitude, so along a parallel the Gaussian
/// is `sigma / cos(latitude)` degrees of longitude wide: equally wide on the ground everywhere.
/// Towards the poles that grows without end, and is held at 180 degrees, where the Gaussian wound
/// round the Earth has become the mean of the parallel to within a few percent.
///
/// Where the region goes round the Earth, longitudes wrap. At the other edges the weights inside
/// the picture are brought back to a sum of one, so that a constant stays as it is; nothing is
/// carried across a pole. Sigma 0 answers the field itself.
/// \throws MapError unless 0 <= sigma <= kGreatestSigma.
Field smooth(const Field& field, double sigma);

} // namespace Maps
