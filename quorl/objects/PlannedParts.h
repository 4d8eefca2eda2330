#pragma once

#include <quorl/Forward.h>
#include <quorl/objects/RequestPlan.h>

namespace Quorl
{

/// Goes along a plan with a walk, since not all of the plan holds, and spares it the parts that do.
///
///     if (parts.beginsIdlePart(object, request)) parts.repeat(request);
///     else parts.enter(object);
class PlannedParts
{
public:
    using Place = RequestPlan::Place;

    /// \param plan must outlive this; null for none.
    explicit PlannedParts(const RequestPlan* plan = nullptr) : plan_(plan) {}

    /// Whether an object, where the walk has come to, begins a part in which there is nothing to
    /// do. The request has met its newest connection then.
    bool beginsIdlePart(const VObject& object, VRequest& request);

    /// Does what the walk would do there.
    void repeat(const VRequest& request);

    /// The walk enters an object.
    void enter(const VObject& object);

private:
    bool isUsable(const VRequest& request) const;

    const RequestPlan* plan_;
    Place next_ = 0; // step that the walk has not come to yet
    Place work_ = 0; // step that has something to do, if it is not behind
};

} // namespace Quorl
