#pragma once

#include "Caption.h"
#include "ColourMap.h"
#include "Image.h"
#include "Region.h"

namespace Maps
{

/// Puts a map into its frame: the caption above it, longitudes below and latitudes to the left,
/// ticks on all four sides, and a colour bar with numbers to the right. North is up.
///
/// Letters and margins grow with the map; a caption that would be wider than the picture is set
/// in smaller letters. The map itself is copied pixel for pixel.
/// \param map      the region in equirectangular projection
/// \param colours  the colours and range that the map was painted with
/// \throws MapError if the map is empty, the region is bad, or a font is missing.
Image frameMap(const Image& map, const Region& region, const ColourMap& colours,
               const Caption& caption);

} // namespace Maps
