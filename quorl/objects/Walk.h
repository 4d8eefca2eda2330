#pragma once

#include <quorl/Forward.h>
#include <quorl/foundation/SegmentedStack.h>
#include <quorl/objects/Repeats.h>
#include <quorl/objects/RequestPlans.h>
#include <quorl/objects/Visit.h>

#include <source_location>

namespace Quorl
{

/// Walks upstream from an object, depth first, on a stack of its own: how deep a network may be is
/// a matter of memory, not of the thread's stack. Objects that are settled are not walked again,
/// and what a plan knows to have nothing to do is not walked at all. Only an object whose class has
/// its own `request` is called, and walked by what that calls.
class Walk
{
public:
    /// \param plans of the object where the walk is to begin.
    Walk(VRequest& request, const WeakVObjectPtr& origin, RequestPlans& plans,
         const std::source_location& operation)
        : request_(request), origin_(origin), operation_(operation), plans_(plans),
          repeats_(request)
    {
    }
    ~Walk();
    Walk(const Walk&) = delete;
    Walk& operator=(const Walk&) = delete;

    /// \return whether the object counts as modified.
    bool from(VObject& object, double precision);

private:
    bool enter(VObject& object, double precision, Repeats::Place place);
    bool leave();
    void ask(VObject& source);

    VRequest& request_;
    const WeakVObjectPtr& origin_;
    const std::source_location operation_;
    RequestPlans& plans_;
    Repeats repeats_;
    Tolmen::SegmentedStack<Visit, 16> path_; // from the object where the walk began
};

} // namespace Quorl
