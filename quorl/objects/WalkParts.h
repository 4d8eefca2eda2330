#pragma once

#include <quorl/objects/WalkGraph.h>

#include <vector>

namespace Quorl
{

/// Finds what stands alone in a walk: an object, and all that is upstream of it, if nobody else
/// asks any of that, and none of that asks anybody else. Its places follow each other, since the
/// walk goes depth first.
/// \param graph of a walk in which each object has one place.
/// \return by place: the place behind the last of the part that begins there; `kNowhere` if what
/// begins there does not stand alone.
std::vector<WalkGraph::Place> endsOfParts(const WalkGraph& graph);

} // namespace Quorl
