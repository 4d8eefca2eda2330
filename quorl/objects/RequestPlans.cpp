#include <quorl/objects/RequestPlans.h>

#include <quorl/objects/KeptPlans.h>
#include <quorl/objects/Repeats.h>
#include <quorl/objects/VObject.h>

#include <new>
#include <utility>

namespace Quorl
{

RequestPlans::RequestPlans(VObject& root) : root_(root), kept_(KeptPlans::takeFrom(root.plans_)) {}

RequestPlans::~RequestPlans()
{
    if (kept_) KeptPlans::bringHome(std::move(kept_));
}

bool RequestPlans::repeat(VRequest& request)
{
    admit(request);
    if (!kept_) return false;
    Repeats::upsetAll();
    parts_ = PlannedParts(kept_->find(request.Pool));
    if (!parts_.beginsIdlePart(root_, request)) return false;
    parts_.repeat(request);
    return true;
}

void RequestPlans::learn(const VRequest& request, const WalkGraph& walked)
{
    if (!Repeats::isSilent(request) || hasForeignIdentity(request)) return;
    try
    {
        if (!kept_) kept_ = std::make_unique<KeptPlans>(root_.plans_);
        kept_->learn(root_, request.Pool, walked);
    }
    catch (const std::bad_alloc&)
    {
        // The request is answered. There is no plan for the next one.
    }
}

void RequestPlans::admit(const VRequest& request)
{
    if (hasForeignIdentity(request)) Tolmen::Watch::shapeChanges();
}

bool RequestPlans::hasForeignIdentity(const VRequest& request)
{
    return request.Id && request.Id->isForeign();
}

void RequestPlans::drop(VObject& root)
{
    KeptPlans::takeFrom(root.plans_).reset();
}

} // namespace Quorl
