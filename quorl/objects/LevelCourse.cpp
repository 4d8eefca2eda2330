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

/// By first place: the object that is visited as often, and always as many levels higher. Where an
/// object has one asker, and is visited at each visit of that and at no other time, it is the
/// asker's; otherwise the object's own.
std::vector<Place> modelsOf(const WalkGraph& graph, const std::vector<LatentVisit>& visits,
                            const VisitTally& tally)
{
    constexpr std::uint8_t kMany = 2;
    struct Ways
    {
        std::uint8_t places = 0; // of the object, by first place; not more than many
        std::uint8_t count = 0;  // that lead to the place; the same
        Place asker = WalkGraph::kNowhere;
    };
    std::vector<Ways> ways(graph.size());
    for (const LatentVisit& visit : visits)
    {
        ways[visit.place].count = kMany;
        if (!visit.isDeep) ways[graph.first(visit.place)].places = kMany;
    }
    for (const Place place : tally.sorted())
    {
        std::uint8_t& places = ways[graph.first(place)].places;
        places = std::min<std::uint8_t>(places + 1, kMany);
        for (auto way = graph.firstSource(place); way; way = way.next())
        {
            Ways& source = ways[way.place()];
            source.count = std::min<std::uint8_t>(source.count + 1, kMany);
            source.asker = place;
        }
    }
    std::vector<Place> models(graph.size());
    for (Place place = 0; place < graph.size(); ++place) models[place] = place;
    for (const Place place : tally.sorted()) // askers before those whom they ask
    {
        const Place first = graph.first(place);
        if (ways[place].count != 1 || ways[first].places != 1) continue;
        const Place asker = graph.first(ways[place].asker);
        if (ways[asker].places == 1) models[first] = models[asker];
    }
    return models;
}

} // namespace

LevelCourse::LevelCourse(const WalkGraph& graph, const std::vector<LatentVisit>& visits)
    : fingerprint_(graph.fingerprint()), graph_(graph), visits_(visits)
{
}

/// Those that are visited most come first: where paths are many, one of them may tell enough.
/// Objects whose depths go alike are counted together.
std::int32_t LevelCourse::changes(Place begin, Place end) const
{
    const VisitTally tally(graph_, visits_);
    const std::vector<Place> models = modelsOf(graph_, visits_, tally);
    std::vector<std::int64_t> alike(graph_.size());
    std::vector<Place> places;
    for (const Place place : tally.places())
        if (begin <= place && place < end && tally.sum(place).isAtSeveralLevels() &&
            alike[models[place]]++ == 0)
            places.push_back(models[place]);
    std::ranges::sort(places, std::ranges::greater(),
                      [&](Place place) { return tally.sum(place).count; });
    std::vector<Run> runs(graph_.size());
    std::int64_t changes = 0;
    for (const Place place : places)
    {
        if (changes >= kMost) break;
        changes += alike[place] * changesOf(place, graph_, visits_, tally, runs);
    }
    return static_cast<std::int32_t>(std::min(changes, kMost));
}

} // namespace Quorl
