#pragma once

#include <quorl/objects/WalkGraph.h>

#include <cstdint>
#include <vector>

namespace Quorl
{

/// A visit of an object, in the order of a walk. A deep one goes on to all that is upstream, on
/// every path; a shallow one does not, since what it asked stands on the list itself.
struct LatentVisit
{
    WalkGraph::Place place;
    std::int32_t level;
    std::int32_t caller; ///< number of the object that asks
    bool isDeep;

    bool operator==(const LatentVisit& other) const = default;
};

/// Works out what many visits come to, without paying them: the paths of a network are as many as
/// an exponential of its depth, its objects and inputs are not.
///
/// All is told by first places. Paths are ordered as a walk takes them: by the visit that they
/// begin with, then by inputs.
class VisitTally
{
public:
    /// What all visits of one object come to.
    struct Sum
    {
        std::int32_t count = 0; ///< of visits; not more than the largest number
        std::int32_t minLevel = 0;
        std::int32_t maxLevel = 0;
        std::int32_t minCaller = 0; ///< of the first visit at that level
        std::int32_t maxCaller = 0;
        std::int32_t firstLevel = 0;
        std::int32_t lastLevel = 0;
        std::int32_t levelBeforeLast = 0; ///< if there are two

        bool isAtSeveralLevels() const { return minLevel != maxLevel; }
    };

    VisitTally(const WalkGraph& graph, const std::vector<LatentVisit>& visits);

    /// All that were visited, each once.
    const std::vector<WalkGraph::Place>& places() const { return places_; }
    const Sum& sum(WalkGraph::Place first) const { return sums_[first]; }

    /// Whether there is an object that was visited at several levels.
    bool areSeveralLevels() const;

    /// The places that deep visits reach, askers before those whom they ask.
    const std::vector<WalkGraph::Place>& sorted() const { return sorted_; }

private:
    using Place = WalkGraph::Place;

    struct Paths // of deep visits to a place
    {
        std::int32_t count = 0;
        std::int32_t minLevel = 0;
        std::int32_t maxLevel = 0;
    };

    void sortPlaces();
    void countPaths();
    void addUp(Place place, std::int32_t count, std::int32_t minLevel, std::int32_t maxLevel);
    void findCallers(std::int32_t Paths::* bound, std::int32_t Sum::* level,
                     std::int32_t Sum::* caller);
    void findFirstLevels();
    void findLastLevels();

    const WalkGraph& graph_;
    const std::vector<LatentVisit>& visits_;
    std::vector<Place> sorted_;
    std::vector<Paths> paths_; // by place
    std::vector<Sum> sums_;    // by first place
    std::vector<Place> places_;
};

} // namespace Quorl
