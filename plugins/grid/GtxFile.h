#pragma once

#include "Grid.h"

#include <filesystem>

namespace Maps
{

/// Reads a vertical datum grid in GTX format, such as `egm96_15.gtx` (EGM96, 15 minutes of arc).
///
/// Layout, big-endian throughout (the GTX format of the National Geodetic Survey's VDatum; see
/// https://vdatum.noaa.gov/docs/gtx_info.html):
///
///     offset  size  content
///          0     8  double   latitude of the southernmost row, degrees
///          8     8  double   longitude of the westernmost column, degrees
///         16     8  double   latitude step, degrees
///         24     8  double   longitude step, degrees
///         32     4  integer  rows
///         36     4  integer  columns
///         40   4 n  float    n = rows x columns heights in metres, rows from south to north,
///                            each from west to east
///
/// Nothing is taken on trust: the counts are held against the size of the file before memory is
/// asked for, the whole file must be used up, and every height must be finite and within
/// kGreatestHeight.
/// \throws MapError which names the path and what is wrong with it.
Grid readGtx(const std::filesystem::path& path);

/// The most samples that a file may hold, about four times a global grid of one minute of arc.
inline constexpr unsigned long long kMostSamples = 1ULL << 30;

} // namespace Maps
