#pragma once

#include "Grid.h"

#include <filesystem>

namespace Maps
{

/// Reads an ESRI ASCII grid of heights in metres over geographic coordinates in degrees.
///
/// Lines "ncols N", "nrows N", "xllcorner X" or "xllcenter X", "yllcorner Y" or "yllcenter Y",
/// "cellsize D" and, maybe, "nodata_value V", in this order, their words in any case; then the rows
/// from north to south, each from west to east (the format of Esri's "Esri ASCII raster format"). A
/// corner is that of the cell, whose height stands in its middle.
///
/// The counts are held against the size of the file before memory is asked for, the whole file must
/// be used up, and a cell without data is refused.
/// \throws MapError which names the path and what is wrong with it.
Grid readAsciiGrid(const std::filesystem::path& path);

} // namespace Maps
