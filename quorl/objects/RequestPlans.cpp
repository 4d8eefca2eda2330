#include <quorl/objects/RequestPlans.h>

#include <quorl/foundation/Watch.h>
#include <quorl/objects/Repeats.h>
#include <quorl/objects/RequestPlan.h>
#include <quorl/objects/VObject.h>
#include <quorl/objects/WalkSurvey.h>

#include <cstddef>
#include <cstdint>
#include <new>
#include <utility>
#include <vector>

namespace Quorl
{

/// What an object keeps from request to request.
class KeptPlans
{
public:
    /// Drops those that are not valid any more, on the way.
    const RequestPlan* find(const RefPtr<ValuePool>& pool)
    {
        std::erase_if(plans_, [](const auto& plan) { return !plan->isValid(); });
        for (const auto& plan : plans_)
            if (plan->isFor(pool)) return plan.get();
        return nullptr;
    }

    void learn(VObject& root, const RefPtr<ValuePool>& pool, const WalkGraph& walked)
    {
        const Moment now;
        if (std::exchange(lastWalk_, now) != now || hopeless_ == now || find(pool)) return;
        WalkSurvey survey(walked);
        const WalkSurvey::Result result = survey.from(root);
        const bool isTooMuch = RequestPlan::stepsOfAll() + survey.graph().size() > kMostSteps;
        if (result == WalkSurvey::Result::Impossible || isTooMuch) hopeless_ = now;
        if (result != WalkSurvey::Result::Complete || isTooMuch) return;
        plans_.push_back(std::make_unique<RequestPlan>(survey.graph(), pool));
    }

private:
    /// Two moments are equal if no network has another shape, and no pool other variables.
    struct Moment
    {
        std::uint64_t shape = Tolmen::Watch::shape();
        std::uint64_t variables = Tolmen::Watch::variables();
        bool operator==(const Moment&) const = default;
    };

    static constexpr std::size_t kMostSteps = std::size_t{1} << 22; // some 100 bytes each

    std::vector<std::unique_ptr<RequestPlan>> plans_;
    Moment lastWalk_{0, 0}; // its end
    Moment hopeless_{0, 0}; // when a survey found that there can be no plan
};

RequestPlans::RequestPlans(VObject& root)
    : root_(root), kept_(root.plans_.exchange(nullptr, std::memory_order_acquire))
{
}

RequestPlans::~RequestPlans()
{
    if (kept_) delete root_.plans_.exchange(kept_.release(), std::memory_order_acq_rel);
}

bool RequestPlans::repeat(VRequest& request)
{
    if (!kept_) return false;
    Repeats::upsetAll();
    parts_ = PlannedParts(kept_->find(request.Pool));
    if (!parts_.hold(root_, request)) return false;
    parts_.repeat(request);
    return true;
}

void RequestPlans::learn(const VRequest& request, const WalkGraph& walked)
{
    if (!Repeats::isSilent(request)) return;
    try
    {
        if (!kept_) kept_ = std::make_unique<KeptPlans>();
        kept_->learn(root_, request.Pool, walked);
    }
    catch (const std::bad_alloc&)
    {
        // The request is answered. There is no plan for the next one.
    }
}

void RequestPlans::drop(VObject& root)
{
    delete root.plans_.exchange(nullptr, std::memory_order_acquire);
}

} // namespace Quorl
