#pragma once

#include "Image.h"

#include <filesystem>

namespace Maps
{

/// Writes a picture as a binary PPM file ("P6", 8 bits a channel; see the ppm page of Netpbm's
/// manual, https://netpbm.sourceforge.net/doc/ppm.html), whole or not at all as `writePng` does.
/// The stored values are those of sRGB, as most programs expect.
/// \throws MapError which names the path and the reason.
void writePpm(const Image& image, const std::filesystem::path& path);

} // namespace Maps
