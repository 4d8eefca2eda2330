#include <quorl/objects/RequestPlans.h>

#include <quorl/objects/Repeats.h>
#include <quorl/objects/VObject.h>

namespace Quorl
{

RequestPlans::RequestPlans(VObject& root)
    : root_(root), plans_(root.plans_.exchange(nullptr, std::memory_order_acquire))
{
}

RequestPlans::~RequestPlans()
{
    if (plans_) delete root_.plans_.exchange(plans_.release(), std::memory_order_acq_rel);
}

bool RequestPlans::repeat(VRequest& request)
{
    if (!plans_) return false;
    Repeats::upsetAll();
    parts_ = PlannedParts(find(request.Pool));
    if (!parts_.hold(root_, request)) return false;
    parts_.repeat(request);
    return true;
}

void RequestPlans::keep(const WalkGraph& graph, const RefPtr<ValuePool>& pool)
{
    if (!plans_) plans_ = std::make_unique<List>();
    if (!find(pool)) plans_->push_back(std::make_unique<RequestPlan>(graph, pool));
}

void RequestPlans::drop(VObject& root)
{
    delete root.plans_.exchange(nullptr, std::memory_order_acquire);
}

/// Drops those that are not valid any more, on the way.
const RequestPlan* RequestPlans::find(const RefPtr<ValuePool>& pool)
{
    std::erase_if(*plans_, [](const auto& plan) { return !plan->isValid(); });
    for (const auto& plan : *plans_)
        if (plan->isFor(pool)) return plan.get();
    return nullptr;
}

} // namespace Quorl
