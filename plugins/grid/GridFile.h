#pragma once

#include "Grid.h"

#include <filesystem>

namespace Maps
{

/// Reads a grid of heights: a file that ends in ".asc" as ESRI ASCII, any other as GTX.
/// \throws MapError which names the path and what is wrong with it.
Grid readGrid(const std::filesystem::path& path);

/// Whether the file ends as one of these formats does: ".asc" or ".gtx", in any case.
bool isGridFile(const std::filesystem::path& path);

} // namespace Maps
