#pragma once

#include <quorl/objects/VisitTally.h>
#include <quorl/objects/WalkGraph.h>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace Quorl
{

/// How the depths of objects go from visit to visit. To count how often they become others takes
/// time with the objects times their inputs, which is longer than a walk may last: what is needed
/// for that is kept here, for whoever asks.
class LevelCourse
{
public:
    using Place = WalkGraph::Place;

    LevelCourse(const WalkGraph& graph, const std::vector<LatentVisit>& visits);

    /// How often the depth of one of the objects with first places from `begin` to ahead of `end`
    /// is another at a visit than it was at the one before; not more than the largest number.
    std::int32_t changes(Place begin, Place end) const;

    /// In visits and ways.
    std::size_t size() const { return graph_.size() + graph_.ways() + visits_.size(); }

    /// Equal courses have the same; others hardly ever.
    std::size_t fingerprint() const { return fingerprint_; }

    bool operator==(const LevelCourse& other) const = default;

private:
    std::size_t fingerprint_;
    WalkGraph graph_;
    std::vector<LatentVisit> visits_;
};

} // namespace Quorl
