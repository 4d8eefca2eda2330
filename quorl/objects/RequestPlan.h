#pragma once

#include <quorl/Forward.h>
#include <quorl/foundation/Ageable.h>
#include <quorl/foundation/RefPtr.h>
#include <quorl/objects/LevelLog.h>
#include <quorl/objects/RequestExecutor.h>
#include <quorl/objects/WalkGraph.h>

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace Quorl
{

class LevelCourse;
class VisitTally;

/// What a walk that found nothing to do has compared, and what it left behind. The same evaluation
/// once more is comparisons of ages alone, one behind the other in memory.
///
/// A plan is for one object, where requests begin, and one context. It is valid as long as neither
/// the shape of any network nor the variables of any pool change; it looks at nothing that it keeps
/// before that is known. Ages are compared each time.
///
/// Its steps are the objects, in the order in which the walk met them. What stands alone in the
/// network can be repeated alone.
class RequestPlan
{
public:
    using Place = WalkGraph::Place;

    /// \param graph of a walk in which each object has one place, that of the beginning first; none
    /// has a state that is lent.
    RequestPlan(const WalkGraph& graph, const RefPtr<ValuePool>& pool);
    ~RequestPlan();
    RequestPlan(const RequestPlan&) = delete;
    RequestPlan& operator=(const RequestPlan&) = delete;

    /// How many there are in all plans of the process: what memory they take.
    static std::size_t stepsOfAll() { return theSteps.load(std::memory_order_relaxed); }

    /// Not for a pool that has ended, whoever holds it.
    bool isFor(const RefPtr<ValuePool>& pool) const
    {
        return pool_ == pool && (pool || !pool.referer);
    }
    bool isValid() const;

    // The following: \pre the plan is valid.

    bool isStep(Place place, const VObject& object) const
    {
        return place < steps_.size() && steps_[place].object == &object;
    }

    /// Behind the last step of what begins at a step and stands alone; that step itself if it does
    /// not.
    Place endOfPart(Place begin) const { return steps_[begin].endOfPart; }

    /// Compares all ages of a part, and notes the newest connection if nothing is to be done.
    /// \return the first step that has something to do; `end` if there is none.
    Place findWork(VRequest& request, Place begin, Place end) const;

    /// Leaves behind what a walk does that finds nothing to do in a part, of which the first object
    /// has been told its depth. \pre that has been found out.
    void leaveTraces(const VRequest& request, Place begin, Place end) const;

private:
    struct Step
    {
        VObject* object;
        const Ageable* age;
        const Ageable* connection;
        std::uint32_t endOfInputs; // the ages that must not be younger: from the end of the last
        Place endOfPart;
    };
    struct State // of one of the few objects that have one
    {
        Place place;
        const Ageable* state;
    };

    void addStep(const WalkGraph& graph, Place place, const RefPtr<ValuePool>& pool);
    void addInputs(const VObject& object, const RefPtr<ValuePool>& pool);
    void addTraces(const WalkGraph& graph, const VisitTally& tally);
    void addParts(const WalkGraph& graph, const VisitTally& tally);

    bool isDone(const Step& step, const Ageable* const* inputs) const;
    bool hasWork(const State& state) const;
    bool isAtSeveralLevels(Place begin, Place end) const; // one of these
    void prefetch(Place place) const;

    static std::atomic<std::size_t> theSteps;

    const WeakPtr<ValuePool> pool_;
    const std::uint64_t shape_;
    const std::uint64_t variables_;
    std::vector<Step> steps_;
    std::vector<const Ageable*> inputs_;
    std::vector<State> states_;
    std::vector<RequestExecutor::Descents> descents_; // by step, as if it all began at depth 0
    std::shared_ptr<LevelLog::Records> records_;      // the same
    std::vector<Place> severalLevels_;                // that are visited at several levels
    std::shared_ptr<const LevelCourse> course_;       // null if there are none
};

} // namespace Quorl
