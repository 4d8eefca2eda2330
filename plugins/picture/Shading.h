#pragma once

#include "Field.h"
#include "Image.h"

namespace Maps
{

/// Lays shade over colours, in linear light: colour x (ambient + contrast x shade).
///
/// The ambient light is chosen so that level ground keeps its colour and can be read off the
/// legend: ambient = 1 - contrast x levelShade.
/// \param shade       0 to 1 for each pixel
/// \param levelShade  the shade of level ground (see shadeOfLevelGround)
/// \param contrast    0 leaves the colours as they are; 1 is the full shade
/// \throws MapError if the sizes differ, or the contrast is not in [0, 2].
LinearImage shadeColours(const LinearImage& colours, const Field& shade, double levelShade,
                         double contrast);

} // namespace Maps
