#include <quorl/objects/WalkExcerpt.h>

#include <utility>

namespace Quorl
{

void WalkExcerpt::take(const WalkGraph& walked, const std::vector<LatentVisit>& visits)
{
    ++excerpt_;
    ways_.clear(); // where memory ran out, there are some left
    graph_ = WalkGraph();
    visits_.clear();
    origins_.clear();
    known_.resize(walked.size());
    for (LatentVisit visit : visits)
    {
        if (visit.isDeep) ways_.push_back(visit.place);
        visit.place = placeOf(walked, visit.place);
        visits_.push_back(visit);
    }
    while (!ways_.empty())
    {
        const Place origin = ways_.back();
        ways_.pop_back();
        const Place asker = placeOf(walked, origin);
        if (std::exchange(known_[origin].isDescended, true)) continue;
        for (auto way = walked.firstSource(origin); way; way = way.next())
        {
            graph_.addSource(asker, placeOf(walked, way.place()));
            ways_.push_back(way.place());
        }
    }
}

/// The first place of an object comes with each of its places.
WalkExcerpt::Place WalkExcerpt::placeOf(const WalkGraph& walked, Place origin)
{
    Known& known = known_[origin];
    if (known.excerpt == excerpt_) return known.place;
    const Place first = walked.first(origin);
    const Place here = first == origin ? WalkGraph::kNowhere : placeOf(walked, first);
    known = {excerpt_, false, graph_.add(walked.number(origin), here)};
    origins_.push_back(origin);
    return known.place;
}

} // namespace Quorl
