#pragma once

#include "Mesh.h"

namespace Volumes
{

/// A mesh without all but its `count` largest parts, by the number of their triangles; a part is
/// what hangs together by common vertices. Of equal ones that with the earlier vertex is kept. What
/// stays keeps its order.
/// \throws Maps::MapError if the count is negative; 0 keeps all.
Mesh largestParts(const Mesh& mesh, int count);

} // namespace Volumes
