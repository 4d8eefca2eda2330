#pragma once

#include "Colour.h"
#include "Raster.h"

namespace Maps
{

/// A picture as it is stored, row 0 at the top.
using Image = Raster<Rgb>;

/// A picture in the making, in linear light, so that shading it loses no steps.
using LinearImage = Raster<LinearRgb>;

/// The picture as it is stored; light beyond what can be shown is cut off.
Image encode(const LinearImage& image);

/// The light of a stored picture. `encode` makes the same picture of it again.
LinearImage decode(const Image& image);

} // namespace Maps
