#include <quorl/objects/RequestPlan.h>

#include <quorl/foundation/Watch.h>
#include <quorl/objects/Repeats.h>
#include <quorl/objects/VObject.h>
#include <quorl/objects/VisitTally.h>
#include <quorl/slots/InputCursor.h>
#include <quorl/slots/VParameter.h>
#include <quorl/slots/VSlot.h>
#include <quorl/values/ValuePool.h>

namespace Quorl
{

RequestPlan::RequestPlan(const WalkGraph& graph, const RefPtr<ValuePool>& pool)
    : pool_(pool), shape_(Tolmen::Watch::shape()), variables_(Tolmen::Watch::variables())
{
    for (WalkGraph::Place place = 0; place < graph.size(); ++place) addStep(graph, place, pool);
    addDepths(graph);
}

RequestPlan::~RequestPlan() = default;

bool RequestPlan::isValid() const
{
    return isComplete_ && shape_ == Tolmen::Watch::shape() &&
           variables_ == Tolmen::Watch::variables();
}

// Made of a walk

void RequestPlan::addStep(const WalkGraph& graph, WalkGraph::Place place,
                          const RefPtr<ValuePool>& pool)
{
    VObject& object = *graph.object(place);
    const Ageable& age = object.age(pool);
    addInputs(object, pool);
    for (auto way = graph.firstSource(place); way; way = way.next())
        inputs_.push_back(&graph.object(way.place())->age(pool));
    if (const RefPtr<VStateCreatorBase::State>& state = object.stateIn(pool))
        states_.push_back({&*state, &age});
    if (object.areStatesLent()) isComplete_ = false;
    steps_.push_back(
        {&object, &age, &object.ConnectionAge(), static_cast<std::uint32_t>(inputs_.size())});
}

void RequestPlan::addInputs(const VObject& object, const RefPtr<ValuePool>& pool)
{
    InputCursor inputs(object, VObject::kAllLevels);
    while (inputs.next())
        if (object.takesPart(inputs.slot()))
            inputs_.push_back(&inputs.slot()->Parameter->age(pool));
}

void RequestPlan::addDepths(const WalkGraph& graph)
{
    std::vector<LatentVisit> visits;
    for (auto way = graph.firstSource(0); way; way = way.next())
        visits.push_back({way.place(), 1, graph.number(0), true});
    const VisitTally tally(graph, visits);
    records_ = std::make_shared<VRequest::ID::Records>();
    for (WalkGraph::Place place = 1; place < graph.size(); ++place)
    {
        const VisitTally::Sum& sum = tally.sum(place);
        const VisitTally::Course course = tally.course(place);
        shares_ += sum.count > 1 ? 2 : 1;
        descents_.push_back({sum.count > 1, course.firstLevel, sum.levelBeforeLast, sum.lastLevel,
                             sum.maxLevel, course.changes});
        records_->push_back(
            {graph.number(place),
             {sum.minLevel, sum.maxLevel, sum.count, sum.minCaller, sum.maxCaller}});
    }
}

// Followed

bool RequestPlan::repeat(VRequest& request) const
{
    if (!findsNothing(request)) return false;
    leaveTraces(request);
    return true;
}

/// Compares all ages, and notes the newest connection.
bool RequestPlan::findsNothing(VRequest& request) const
{
    Ageable newestConnection = request.NewestConnection;
    const VObject* newest = nullptr;
    const Ageable* const* input = inputs_.data();
    for (const Step& step : steps_)
    {
        if (step.object->Current) return false;
        const std::int64_t age = step.age->stamp();
        const std::int64_t connection = step.connection->stamp();
        if (age < connection) return false;
        for (const Ageable* const* const end = inputs_.data() + step.endOfInputs; input != end;
             ++input)
            if ((*input)->stamp() > age) return false;
        if (newestConnection.stamp() >= connection) continue;
        newestConnection = *step.connection;
        newest = step.object;
    }
    if (!areStatesDone()) return false;
    if (!newest) return true;
    request.NewestConnection = newestConnection;
    request.NewestConnectionObject = static_cast<std::int32_t>(newest->ID);
    return true;
}

bool RequestPlan::areStatesDone() const
{
    for (const State& entry : states_)
        if (!(*entry.state < Ageable(1)) && *entry.state < *entry.object) return false;
    return true;
}

void RequestPlan::leaveTraces(const VRequest& request) const
{
    VObject& root = *steps_.front().object;
    const std::int32_t level = root.Executor.knownLevel();
    Tolmen::ManyShares<VRequest::ID> id(request.Id, shares_);
    root.pass(id, false);
    for (std::size_t at = 0; at < descents_.size(); ++at)
    {
        VObject& object = *steps_[at + 1].object;
        object.pass(id, descents_[at].areSeveral);
        object.Executor.descend(root.Executor.Max, descents_[at].from(level));
    }
    request.Id->considerEvaluation(records_, level);
}

// The plans of an object. Whoever works with them has taken them: another thread finds none then.

bool RequestPlans::repeat(VObject& root, VRequest& request)
{
    std::unique_ptr<RequestPlans> plans(root.plans_.exchange(nullptr, std::memory_order_acquire));
    if (!plans) return false;
    const RequestPlan* const plan = plans->find(request.Pool);
    Repeats::upsetAll();
    const bool isDone = plan && Repeats::isSilent(request) && request.Id && plan->repeat(request);
    delete root.plans_.exchange(plans.release(), std::memory_order_acq_rel);
    return isDone;
}

void RequestPlans::keep(VObject& root, const WalkGraph& graph, const RefPtr<ValuePool>& pool)
{
    std::unique_ptr<RequestPlans> plans(root.plans_.exchange(nullptr, std::memory_order_acquire));
    if (!plans) plans = std::make_unique<RequestPlans>();
    if (!plans->find(pool)) plans->plans_.push_back(std::make_unique<RequestPlan>(graph, pool));
    delete root.plans_.exchange(plans.release(), std::memory_order_acq_rel);
}

void RequestPlans::drop(VObject& root)
{
    delete root.plans_.exchange(nullptr, std::memory_order_acquire);
}

/// Drops those that are not valid any more, on the way.
const RequestPlan* RequestPlans::find(const RefPtr<ValuePool>& pool)
{
    std::erase_if(plans_, [](const auto& plan) { return !plan->isValid(); });
    for (const auto& plan : plans_)
        if (plan->isFor(pool)) return plan.get();
    return nullptr;
}

} // namespace Quorl
