#include <quorl/objects/WalkCycles.h>

#include <algorithm>
#include <utility>

namespace Quorl
{

bool WalkCycles::enter(Place place, Place first)
{
    const bool isCyclic = visits_[first].isCyclic;
    if (isCyclic) ++cyclicUnderWay_;
    visits_[place].wasCyclic = isCyclic;
    visits_[place].isUnderWay = true;
    return visits_[first].underWay++ > 0;
}

void WalkCycles::leave(Place place, Place first)
{
    if (visits_[place].wasCyclic) --cyclicUnderWay_;
    visits_[place].isUnderWay = false;
    --visits_[first].underWay;
}

void WalkCycles::settle(Place place, Place first, Passed&& passed)
{
    if (passed.empty()) return;
    visits_[first].isCyclic = true;
    visits_[place].isHead = passed.erase(place) > 0;
    if (!passed.empty()) passed_.insert_or_assign(place, std::move(passed));
}

const WalkCycles::Passed& WalkCycles::passedBy(Place place) const
{
    static const Passed kNobody;
    const auto known = passed_.find(place);
    return known != passed_.end() ? known->second : kNobody;
}

bool WalkCycles::isCutAsBefore(Place place) const
{
    if (passed_.empty() && cyclicUnderWay_ == 0) return true;
    const Passed& passed = passedBy(place);
    if (visits_[place].isHead) return passed.empty() && cyclicUnderWay_ == 0;
    return std::ranges::all_of(passed, [&](Place at) { return isUnderWay(at); });
}

} // namespace Quorl
