#pragma once

#include "Image.h"

#include <filesystem>

namespace Maps
{

/// Writes a picture as its file's suffix says, whole or not at all: ".ppm" as PPM, any other as
/// PNG.
/// \throws MapError which names the path and the reason.
void writePicture(const Image& image, const std::filesystem::path& path);

/// \throws MapError which names the path, if there is no picture.
void checkPicture(const Image& image, const std::filesystem::path& path);

} // namespace Maps
