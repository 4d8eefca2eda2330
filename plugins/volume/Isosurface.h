#pragma once

#include "Mesh.h"
#include "Volume.h"

namespace Volumes
{

/// The most triangles that a surface may have.
inline constexpr std::size_t kMostTriangles = 50'000'000;

/// The surface where the values of a volume pass `level`, by marching tetrahedra.
///
/// Each cell between eight voxels is cut into six tetrahedra around its diagonal, in the same way
/// everywhere, so that neighbours agree on their common faces (H. Freudenthal,
/// "Simplizialzerlegungen von beschränkter Flachheit", Annals of Mathematics 43, 1942). The surface
/// within a tetrahedron is one triangle or two (A. Doi and A. Koide, "An efficient method of
/// triangulating equi-valued surfaces by using tetrahedral cells", IEICE Transactions E74, 1991). A
/// vertex stands on an edge, where linear interpolation puts it, and is shared by all triangles
/// around it: the surface has no gaps and no ambiguous cells, and is closed but for where it leaves
/// the volume.
///
/// What is at the level or above it is inside. Normals come from the gradient of the volume, by
/// central differences, and point outwards, that is, to the lower values.
/// \throws MapError if the level is not finite, or gives more than kMostTriangles.
Mesh isosurface(const Volume& volume, double level);

} // namespace Volumes
