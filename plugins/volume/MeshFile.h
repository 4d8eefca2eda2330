#pragma once

#include "Mesh.h"

#include <filesystem>

namespace Volumes
{

/// Writes a mesh as a binary, little-endian PLY file (G. Turk, "The PLY polygon file format",
/// 1994): for each vertex x, y, z, nx, ny, nz as floats, places in millimetres; for each triangle a
/// list of three ints. Whole or not at all: what stood at `path` before stays if it fails.
/// \throws MapError which names the path and the reason.
void writePly(const Mesh& mesh, const std::filesystem::path& path);

/// Writes a mesh as a text file in the Wavefront OBJ format: "v", "vn" and "f" lines, with as many
/// digits as it takes to read the same floats again. Whole or not at all, as above.
void writeObj(const Mesh& mesh, const std::filesystem::path& path);

} // namespace Volumes
