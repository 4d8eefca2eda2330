#pragma once

#include <quorl/Forward.h>
#include <quorl/foundation/RefPtr.h>
#include <quorl/objects/PlannedParts.h>
#include <quorl/objects/RequestPlan.h>
#include <quorl/objects/WalkGraph.h>

#include <memory>
#include <vector>

namespace Quorl
{

/// The plans of an object, one for each context where requests begin at it. They are taken for the
/// time of a request: whoever begins another one meanwhile finds none.
class RequestPlans
{
public:
    using List = std::vector<std::unique_ptr<RequestPlan>>;

    explicit RequestPlans(VObject& root);
    ~RequestPlans();
    RequestPlans(const RequestPlans&) = delete;
    RequestPlans& operator=(const RequestPlans&) = delete;

    /// Answers a request by a plan. \return false if that cannot be. Then nothing has been done,
    /// and a walk may still repeat parts.
    bool repeat(VRequest& request);

    PlannedParts& parts() { return parts_; }

    /// Makes a plan of a walk that found nothing to do.
    void keep(const WalkGraph& graph, const RefPtr<ValuePool>& pool);

    static void drop(VObject& root);

private:
    const RequestPlan* find(const RefPtr<ValuePool>& pool);

    VObject& root_;
    std::unique_ptr<List> plans_; // null if there have never been any
    PlannedParts parts_;
};

} // namespace Quorl
