#pragma once

#include "Image.h"

#include <filesystem>

namespace Maps
{

/// Writes a picture as a PNG file with 8 bits a channel and an sRGB mark, whole or not at all.
///
/// What stood at `path` before stays as it was if this fails; see NewFile. The same picture gives
/// the same bytes.
/// \throws MapError which names the path and the reason.
void writePng(const Image& image, const std::filesystem::path& path);

} // namespace Maps
