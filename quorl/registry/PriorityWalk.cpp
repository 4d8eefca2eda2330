#include <quorl/registry/PriorityWalk.h>

#include <iterator>

namespace Quorl
{

PriorityWalk::PriorityWalk(VCreatorMap& domain, int from)
    : domain_(domain), counted_(domain), line_(domain.priorities().lower_bound(from))
{
    domain_.walks_.push_back(this);
}

PriorityWalk::~PriorityWalk()
{
    domain_.walks_.remove(this);
}

void PriorityWalk::goOn()
{
    if (!hasLeft_) ++line_;
    hasLeft_ = false;
}

void PriorityWalk::leave(Place removed)
{
    if (line_ != removed) return;
    ++line_;
    if (!hasLeft_) leftPriority_ = removed->first;
    hasLeft_ = true;
}

/// A line between the one that is gone and the one behind it is the next to be shown.
void PriorityWalk::noteAdded(Place added)
{
    if (hasLeft_ && std::next(added) == line_ && added->first >= leftPriority_) line_ = added;
}

} // namespace Quorl
