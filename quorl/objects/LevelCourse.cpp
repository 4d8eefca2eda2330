#include <quorl/objects/LevelCourse.h>

#include <algorithm>
#include <limits>
#include <ranges>

namespace Quorl
{
namespace
{

using Place = WalkGraph::Place;

constexpr std::int64_t kMost = std::numeric_limits<std::int32_t>::max();

/// A number of visits of one object that follow each other.
struct Run
{
    bool isVisited = false;
    std::int32_t firstLevel = 0;
    std::int32_t lastLevel = 0;
    std::int64_t changes = 0; // between them; not much more than the largest number

    void append(const Run& next, std::int32_t deeper)
    {
        if (!next.isVisited) return;
        const bool isChange = isVisited && lastLevel != next.firstLevel + deeper;
        if (!isVisited) firstLevel = next.firstLevel + deeper;
        isVisited = true;
        lastLevel = next.lastLevel + deeper;
        changes = std::min(changes + next.changes + (isChange ? 1 : 0), kMost);
    }
};

/// Appends what is visited below each place, in levels that count from there, from the sources on.
std::int64_t changesOf(Place first, const WalkGraph& graph, const std::vector<LatentVisit>& visits,
                       const VisitTally& tally, std::vector<Run>& runs)
{
    constexpr Run kItself{true};
    for (const Place place : tally.sorted() | std::views::reverse)
    {
        Run& run = runs[place];
        run = graph.first(place) == first ? kItself : Run();
        for (auto way = graph.firstSource(place); way; way = way.next())
            run.append(runs[way.place()], 1);
    }
    Run all;
    for (const LatentVisit& visit : visits)
        if (visit.isDeep)
            all.append(runs[visit.place], visit.level);
        else if (graph.first(visit.place) == first)
            all.append(kItself, visit.level);
    return all.changes;
}

} // namespace

LevelCourse::LevelCourse(const WalkGraph& graph, const std::vector<LatentVisit>& visits)
    : graph_(graph), visits_(visits)
{
}

/// Those that are visited most come first: where paths are many, one of them may tell enough.
std::int32_t LevelCourse::changes(Place begin, Place end) const
{
    const VisitTally tally(graph_, visits_);
    std::vector<Place> places;
    for (const Place place : tally.places())
        if (begin <= place && place < end && tally.sum(place).isAtSeveralLevels())
            places.push_back(place);
    std::ranges::sort(places, std::ranges::greater(),
                      [&](Place place) { return tally.sum(place).count; });
    std::vector<Run> runs(graph_.size());
    std::int64_t changes = 0;
    for (const Place place : places)
    {
        if (changes >= kMost) break;
        changes += changesOf(place, graph_, visits_, tally, runs);
    }
    return static_cast<std::int32_t>(std::min(changes, kMost));
}

} // namespace Quorl
