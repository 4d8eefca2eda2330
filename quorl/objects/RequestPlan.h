#pragma once

#include <quorl/Forward.h>
#include <quorl/foundation/Ageable.h>
#include <quorl/foundation/RefPtr.h>
#include <quorl/objects/RequestExecutor.h>
#include <quorl/objects/VRequest.h>
#include <quorl/objects/WalkGraph.h>

#include <cstdint>
#include <memory>
#include <vector>

namespace Quorl
{

/// What a walk that found nothing to do has compared, and what it left behind. The same evaluation
/// once more is comparisons of ages alone, one behind the other in memory.
///
/// A plan is for one object, where requests begin, and one context. It is valid as long as neither
/// the shape of any network nor the variables of any pool change; it looks at nothing that it keeps
/// before that is known. Ages are compared each time.
class RequestPlan
{
public:
    /// \param graph of a walk in which each object has one place, that of the beginning first.
    RequestPlan(const WalkGraph& graph, const RefPtr<ValuePool>& pool);
    ~RequestPlan();
    RequestPlan(const RequestPlan&) = delete;
    RequestPlan& operator=(const RequestPlan&) = delete;

    bool isFor(const RefPtr<ValuePool>& pool) const { return pool_ == pool; }
    bool isValid() const;

    /// Does what a walk does that finds nothing to do. \pre the plan is valid.
    /// \return false, and nothing has been done, if there is something to do.
    bool repeat(VRequest& request) const;

private:
    struct Step // of one object, in the order of the walk
    {
        VObject* object;
        const Ageable* age;
        const Ageable* connection;
        std::uint32_t endOfInputs; // the ages that must not be younger: from the end of the last
    };
    struct State
    {
        const Ageable* state;
        const Ageable* object;
    };

    void addStep(const WalkGraph& graph, WalkGraph::Place place, const RefPtr<ValuePool>& pool);
    void addInputs(const VObject& object, const RefPtr<ValuePool>& pool);
    void addDepths(const WalkGraph& graph);

    bool findsNothing(VRequest& request) const;
    bool areStatesDone() const;
    void leaveTraces(const VRequest& request) const;

    const WeakPtr<ValuePool> pool_;
    const std::uint64_t shape_;
    const std::uint64_t variables_;
    bool isComplete_ = true;
    std::vector<Step> steps_;
    std::vector<const Ageable*> inputs_;
    std::vector<State> states_;                       // of the few objects that have one
    std::vector<RequestExecutor::Descents> descents_; // of all steps but the first
    std::int32_t shares_ = 1; // of an ID that the traces take, the beginning's first
    std::shared_ptr<VRequest::ID::Records> records_;
};

/// The plans of an object, one for each context where requests begin at it.
class RequestPlans
{
public:
    /// Answers a request by a plan. \return false, and nothing has been done, if that cannot be.
    static bool repeat(VObject& root, VRequest& request);

    /// Makes a plan of a walk that found nothing to do.
    static void keep(VObject& root, const WalkGraph& graph, const RefPtr<ValuePool>& pool);

    static void drop(VObject& root);

private:
    const RequestPlan* find(const RefPtr<ValuePool>& pool);

    std::vector<std::unique_ptr<RequestPlan>> plans_;
};

} // namespace Quorl
