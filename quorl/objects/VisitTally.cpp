#include <quorl/objects/VisitTally.h>

#include <algorithm>
#include <limits>
#include <ranges>

namespace Quorl
{
namespace
{

using Place = WalkGraph::Place;
using Source = WalkGraph::Source;

constexpr std::int64_t kMost = std::numeric_limits<std::int32_t>::max();

std::int32_t bounded(std::int64_t count)
{
    return static_cast<std::int32_t>(std::min(count, kMost));
}

/// Where a descent stands in the sources of a place, and at which level that is.
struct Step
{
    Place place;
    std::int32_t level;
    Source way;
};

/// Shows each source of the last place of a path, in one direction, until all have been shown of
/// all places that this adds to the path.
template <class Show>
void descend(std::vector<Step>& path, Source (Source::*onwards)() const, Show&& show)
{
    while (!path.empty())
    {
        const Step at = path.back();
        if (at.way)
        {
            path.back().way = (at.way.*onwards)();
            show(at);
        }
        else
            path.pop_back();
    }
}

/// Shows the first few visits of each object, in the order of the walk or against it, with how many
/// were shown before. The first few of a place lead to those of all that is upstream of it, so that
/// further ones are of no interest.
template <int most, class Visits, class Show>
void showVisits(const WalkGraph& graph, Visits&& visits, Source (WalkGraph::*begin)(Place) const,
                Source (Source::*onwards)() const, Show&& show)
{
    std::vector<std::int8_t> shown(graph.size());
    std::vector<std::int8_t> descended(graph.size());
    std::vector<Step> path;
    const auto visit = [&](Place place, std::int32_t level, bool isDeep) {
        const Place first = graph.first(place);
        if (shown[first] < most) show(first, shown[first]++, level);
        if (!isDeep || descended[place] == most) return;
        ++descended[place];
        path.push_back({place, level, (graph.*begin)(place)});
    };
    for (const LatentVisit& latent : visits)
    {
        visit(latent.place, latent.level, latent.isDeep);
        descend(path, onwards, [&](const Step& at) { visit(at.way.place(), at.level + 1, true); });
    }
}

} // namespace

VisitTally::VisitTally(const WalkGraph& graph, const std::vector<LatentVisit>& visits)
    : graph_(graph), visits_(visits), paths_(graph.size()), sums_(graph.size())
{
    sortPlaces();
    countPaths();
    findCallers(&Paths::minLevel, &Sum::minLevel, &Sum::minCaller);
    findCallers(&Paths::maxLevel, &Sum::maxLevel, &Sum::maxCaller);
    findFirstLevels();
    findLastLevels();
}

bool VisitTally::areSeveralLevels() const
{
    return std::ranges::any_of(places_,
                               [&](Place place) { return sums_[place].isAtSeveralLevels(); });
}

/// By the order in which a descent leaves them, reversed.
void VisitTally::sortPlaces()
{
    std::vector<bool> isKnown(graph_.size());
    std::vector<Step> path;
    const auto enter = [&](Place place) {
        if (isKnown[place]) return;
        isKnown[place] = true;
        path.push_back({place, 0, graph_.firstSource(place)});
    };
    for (const LatentVisit& visit : visits_)
    {
        if (visit.isDeep) enter(visit.place);
        while (!path.empty())
        {
            Step& step = path.back();
            if (!step.way)
            {
                sorted_.push_back(step.place);
                path.pop_back();
                continue;
            }
            const Place source = step.way.place();
            step.way = step.way.next();
            enter(source);
        }
    }
    std::ranges::reverse(sorted_);
}

void VisitTally::countPaths()
{
    const auto lead = [&](Place place, std::int32_t count, std::int32_t minLevel,
                          std::int32_t maxLevel) {
        Paths& paths = paths_[place];
        paths.minLevel = paths.count == 0 ? minLevel : std::min(paths.minLevel, minLevel);
        paths.maxLevel = paths.count == 0 ? maxLevel : std::max(paths.maxLevel, maxLevel);
        paths.count = bounded(std::int64_t{paths.count} + count);
    };
    for (const LatentVisit& visit : visits_)
        if (visit.isDeep)
            lead(visit.place, 1, visit.level, visit.level);
        else
            addUp(visit.place, 1, visit.level, visit.level);
    for (const Place place : sorted_)
    {
        const Paths& paths = paths_[place];
        for (auto way = graph_.firstSource(place); way; way = way.next())
            lead(way.place(), paths.count, paths.minLevel + 1, paths.maxLevel + 1);
        addUp(place, paths.count, paths.minLevel, paths.maxLevel);
    }
}

void VisitTally::addUp(Place place, std::int32_t count, std::int32_t minLevel,
                       std::int32_t maxLevel)
{
    const Place first = graph_.first(place);
    Sum& sum = sums_[first];
    if (sum.count == 0) places_.push_back(first);
    sum.minLevel = sum.count == 0 ? minLevel : std::min(sum.minLevel, minLevel);
    sum.maxLevel = sum.count == 0 ? maxLevel : std::max(sum.maxLevel, maxLevel);
    sum.count = bounded(std::int64_t{sum.count} + count);
}

/// Descends, in the order of the walk, along the paths that are the shortest, or the longest, to
/// each of their places: only those lead to a bound, and the first one there has found it.
void VisitTally::findCallers(std::int32_t Paths::* bound, std::int32_t Sum::* level,
                             std::int32_t Sum::* caller)
{
    std::vector<bool> isFound(graph_.size());
    std::vector<bool> isDescended(graph_.size());
    std::vector<Step> path;
    const auto visit = [&](Place place, std::int32_t itsLevel, std::int32_t itsCaller,
                           bool isDeep) {
        const Place first = graph_.first(place);
        if (!isFound[first] && itsLevel == sums_[first].*level)
        {
            isFound[first] = true;
            sums_[first].*caller = itsCaller;
        }
        if (!isDeep || isDescended[place] || itsLevel != paths_[place].*bound) return;
        isDescended[place] = true;
        path.push_back({place, itsLevel, graph_.firstSource(place)});
    };
    for (const LatentVisit& begin : visits_)
    {
        visit(begin.place, begin.level, begin.caller, begin.isDeep);
        descend(path, &Source::next, [&](const Step& at) {
            visit(at.way.place(), at.level + 1, graph_.number(at.place), true);
        });
    }
}

void VisitTally::findFirstLevels()
{
    showVisits<1>(
        graph_, visits_, &WalkGraph::firstSource, &Source::next,
        [&](Place first, int /*before*/, std::int32_t level) { sums_[first].firstLevel = level; });
}

void VisitTally::findLastLevels()
{
    showVisits<2>(graph_, visits_ | std::views::reverse, &WalkGraph::lastSource, &Source::previous,
                  [&](Place first, int after, std::int32_t level) {
                      (after == 0 ? sums_[first].lastLevel : sums_[first].levelBeforeLast) = level;
                  });
}

} // namespace Quorl
