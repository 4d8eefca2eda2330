#include <quorl/objects/RequestPlan.h>

#include <quorl/foundation/Watch.h>
#include <quorl/objects/LevelCourse.h>
#include <quorl/objects/VObject.h>
#include <quorl/objects/VisitTally.h>
#include <quorl/objects/WalkParts.h>
#include <quorl/slots/InputCursor.h>
#include <quorl/slots/VParameter.h>
#include <quorl/slots/VSlot.h>
#include <quorl/values/ValuePool.h>

#include <algorithm>

namespace Quorl
{
namespace
{

constexpr WalkGraph::Place kStepsAhead = 12; // which memory is told of

std::vector<LatentVisit> visitsOfSources(const WalkGraph& graph)
{
    std::vector<LatentVisit> visits;
    for (auto way = graph.firstSource(0); way; way = way.next())
        visits.push_back({way.place(), 1, graph.number(0), true});
    return visits;
}

} // namespace

constinit std::atomic<std::size_t> RequestPlan::theSteps{0};

RequestPlan::RequestPlan(const WalkGraph& graph, const RefPtr<ValuePool>& pool)
    : pool_(pool), shape_(Tolmen::Watch::shape()), variables_(Tolmen::Watch::variables())
{
    for (Place place = 0; place < graph.size(); ++place) addStep(graph, place, pool);
    const std::vector<LatentVisit> visits = visitsOfSources(graph);
    const VisitTally tally(graph, visits);
    addTraces(graph, tally);
    addParts(graph, tally);
    if (!severalLevels_.empty()) course_ = std::make_shared<LevelCourse>(graph, visits);
    theSteps.fetch_add(steps_.size(), std::memory_order_relaxed);
}

RequestPlan::~RequestPlan()
{
    theSteps.fetch_sub(steps_.size(), std::memory_order_relaxed);
}

bool RequestPlan::isValid() const
{
    return shape_ == Tolmen::Watch::shape() && variables_ == Tolmen::Watch::variables();
}

// Made of a walk

void RequestPlan::addStep(const WalkGraph& graph, Place place, const RefPtr<ValuePool>& pool)
{
    VObject& object = *graph.object(place);
    addInputs(object, pool);
    for (auto way = graph.firstSource(place); way; way = way.next())
        inputs_.push_back(&graph.object(way.place())->age(pool));
    if (const RefPtr<VStateCreatorBase::State>& state = object.stateIn(pool))
        states_.push_back({place, &*state});
    steps_.push_back({&object, &object.age(pool), &object.ConnectionAge(),
                      static_cast<std::uint32_t>(inputs_.size()), place});
}

void RequestPlan::addInputs(const VObject& object, const RefPtr<ValuePool>& pool)
{
    InputCursor inputs(object, VObject::kAllLevels);
    while (inputs.next())
        if (object.takesPart(inputs.slot()))
            inputs_.push_back(&inputs.slot()->Parameter->age(pool));
}

void RequestPlan::addTraces(const WalkGraph& graph, const VisitTally& tally)
{
    records_ = std::make_shared<LevelLog::Records>();
    for (Place place = 0; place < graph.size(); ++place)
    {
        const VisitTally::Sum& sum = tally.sum(place);
        descents_.push_back(
            {sum.count > 1, sum.firstLevel, sum.levelBeforeLast, sum.lastLevel, sum.maxLevel});
        if (sum.isAtSeveralLevels()) severalLevels_.push_back(place);
        records_->push_back(
            {graph.number(place),
             {sum.minLevel, sum.maxLevel, sum.count, sum.minCaller, sum.maxCaller}});
    }
}

void RequestPlan::addParts(const WalkGraph& graph, const VisitTally& tally)
{
    const std::vector<Place> ends = endsOfParts(graph);
    for (Place place = 0; place < graph.size(); ++place)
        if (ends[place] != WalkGraph::kNowhere && tally.sum(place).count <= 1)
            steps_[place].endOfPart = ends[place];
}

// Followed

/// From state to state, so that what follows the first work is not looked at.
RequestPlan::Place RequestPlan::findWork(VRequest& request, Place begin, Place end) const
{
    Ageable newestConnection = request.NewestConnection;
    const VObject* newest = nullptr;
    const Ageable* const* inputs =
        inputs_.data() + (begin == 0 ? 0 : steps_[begin - 1].endOfInputs);
    auto state = std::ranges::lower_bound(states_, begin, {}, &State::place);
    for (Place place = begin; place < end;)
    {
        const bool isState = state != states_.end() && state->place < end;
        for (const Place stop = isState ? state->place + 1 : end; place < stop; ++place)
        {
            prefetch(place + kStepsAhead);
            const Step& step = steps_[place];
            if (!isDone(step, inputs)) return place;
            inputs = inputs_.data() + step.endOfInputs;
            if (newestConnection.stamp() >= step.connection->stamp()) continue;
            newestConnection = *step.connection;
            newest = step.object;
        }
        if (isState && hasWork(*state++)) return place - 1;
    }
    if (!newest) return end;
    request.NewestConnection = newestConnection;
    request.NewestConnectionObject = static_cast<std::int32_t>(newest->ID);
    return end;
}

bool RequestPlan::isDone(const Step& step, const Ageable* const* inputs) const
{
    if (step.object->Current.value().referer) return false; // a visit lets go of a dead one, too
    const std::int64_t age = step.age->stamp();
    if (age < step.connection->stamp()) return false;
    for (const Ageable* const* const end = inputs_.data() + step.endOfInputs; inputs != end;
         ++inputs)
        if ((*inputs)->stamp() > age) return false;
    return true;
}

bool RequestPlan::hasWork(const State& state) const
{
    return !(*state.state < Ageable(1)) && *state.state < *steps_[state.place].age;
}

void RequestPlan::leaveTraces(const VRequest& request, Place begin, Place end) const
{
    VObject& first = *steps_[begin].object;
    const std::int32_t deeper = first.Executor.knownLevel() - descents_[begin].last;
    Tolmen::ManyShares<VRequest::ID> id(request.Id, static_cast<std::int32_t>(2 * (end - begin)));
    first.pass(id, false);
    for (Place place = begin + 1; place < end; ++place)
    {
        prefetch(place + kStepsAhead);
        VObject& object = *steps_[place].object;
        object.pass(id, descents_[place].areSeveral);
        object.Executor.descend(first.Executor.Max, descents_[place].from(deeper));
    }
    if (isAtSeveralLevels(begin, end)) first.Executor.Max->Changes.owe(course_, {begin, end});
    request.Id->log_.add({records_, begin + 1, end, deeper});
}

bool RequestPlan::isAtSeveralLevels(Place begin, Place end) const
{
    const auto place = std::ranges::lower_bound(severalLevels_, begin);
    return place != severalLevels_.end() && *place < end;
}

/// A network may be larger than what is kept near the processor, and its objects lie where they
/// were made.
void RequestPlan::prefetch(Place place) const
{
    if (place >= steps_.size()) return;
    const Step& step = steps_[place];
    __builtin_prefetch(&step.object->Current, 1);
    __builtin_prefetch(&step.object->Executor, 1);
}

} // namespace Quorl
