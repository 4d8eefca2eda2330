#pragma once

#include <quorl/foundation/Counter.h>
#include <quorl/registry/VCreatorMap.h>

namespace Quorl
{

/// A walk over a priority index that stays valid while lines are added by `addPriority` and removed
/// by `removePriority`. It sees what an undisturbed walk sees, lines added behind it included.
class PriorityWalk
{
public:
    /// Stands on the first line with a priority of at least `from`.
    PriorityWalk(VCreatorMap& domain, int from);
    ~PriorityWalk();
    PriorityWalk(const PriorityWalk&) = delete;
    PriorityWalk& operator=(const PriorityWalk&) = delete;

    bool isAtEnd() const { return line_ == domain_.priorities().end(); }
    int priority() const { return line_->first; }
    const VCreatorMap::Line& line() const { return line_->second; }

    void goOn();

private:
    friend class VCreatorMap;
    using Place = VCreatorMap::Priorities::const_iterator;

    void leave(Place removed);
    void noteAdded(Place added);

    VCreatorMap& domain_;
    const Tolmen::CounterScope counted_;
    Place line_;
    bool hasLeft_ = false; // the line that was shown is gone, and this is the one behind it
    int leftPriority_ = 0; // of the line that is gone
};

} // namespace Quorl
