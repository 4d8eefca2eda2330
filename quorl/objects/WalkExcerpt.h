#pragma once

#include <quorl/objects/VisitTally.h>
#include <quorl/objects/WalkGraph.h>

#include <cstdint>
#include <vector>

namespace Quorl
{

/// What latent visits reach of a walk, with places of its own: a walk may account for visits often,
/// and each time that is to cost what these reach, not what the whole walk has met.
class WalkExcerpt
{
public:
    using Place = WalkGraph::Place;

    /// Takes another one. What was taken before is void.
    void take(const WalkGraph& walked, const std::vector<LatentVisit>& visits);

    /// Knows no objects, but their numbers.
    const WalkGraph& graph() const { return graph_; }
    const std::vector<LatentVisit>& visits() const { return visits_; }

    /// Where a place of the excerpt stands in the walk.
    Place origin(Place place) const { return origins_[place]; }

private:
    struct Known // of a place of the walk
    {
        std::uint32_t excerpt = 0; // the last one that has it
        bool isDescended = false;
        Place place = WalkGraph::kNowhere; // there
    };

    Place placeOf(const WalkGraph& walked, Place origin);

    WalkGraph graph_;
    std::vector<LatentVisit> visits_;
    std::vector<Place> origins_;
    std::vector<Known> known_;
    std::vector<Place> ways_; // working storage
    std::uint32_t excerpt_ = 0;
};

} // namespace Quorl
