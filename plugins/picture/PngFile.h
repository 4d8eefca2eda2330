#pragma once

#include "Image.h"

#include <filesystem>

namespace Maps
{

/// Writes a picture as a PNG file with 8 bits a channel and an sRGB mark, whole or not at all.
///
/// The bytes go to a new file beside `path`, which takes the place of `path` when it is complete.
/// On failure that file is removed, and what stood at `path` before stays as it was. Only a
/// regular file is ever replaced. The same picture gives the same bytes.
/// \throws MapError which names the path and the reason.
void writePng(const Image& image, const std::filesystem::path& path);

} // namespace Maps
