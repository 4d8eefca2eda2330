#include <quorl/objects/PlannedParts.h>

#include <quorl/objects/Repeats.h>
#include <quorl/objects/VRequest.h>

namespace Quorl
{

bool PlannedParts::beginsIdlePart(const VObject& object, VRequest& request)
{
    if (!plan_ || !isUsable(request) || !plan_->isStep(next_, object)) return false;
    const Place end = plan_->endOfPart(next_);
    const bool isWorkInside = next_ < work_ && work_ < end;
    if (end == next_ || isWorkInside) return false;
    work_ = plan_->findWork(request, next_, end);
    return work_ == end;
}

void PlannedParts::repeat(const VRequest& request)
{
    const Place end = plan_->endOfPart(next_);
    plan_->leaveTraces(request, next_, end);
    next_ = end;
}

/// An object that is entered once more is behind.
void PlannedParts::enter(const VObject& object)
{
    if (plan_ && plan_->isStep(next_, object)) ++next_;
}

bool PlannedParts::isUsable(const VRequest& request) const
{
    return plan_->isValid() && request.Id && plan_->isFor(request.Pool) &&
           Repeats::isSilent(request);
}

} // namespace Quorl
