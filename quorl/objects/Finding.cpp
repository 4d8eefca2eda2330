#include <quorl/objects/Finding.h>

#include <algorithm>
#include <utility>

namespace Quorl
{

void Finding::noteTold(const Ageable& validator)
{
    notePlace(&validator);
    told_ = std::min(told_, repeats_.connections());
}

void Finding::noteAnswer(const VObject& source)
{
    isSettled_ = isSettled_ && repeats_.isIdle(source);
    if (!isSettled_) return;
    const Repeats::Place place = repeats_.graph().placeOf(source);
    const Repeats::Met& met = repeats_.met_[place];
    isKept_ = isKept_ && met.isKept;
    told_ = std::min(told_, met.told);
    const WalkCycles::Passed& passed = repeats_.cycles_.passedBy(place);
    passed_.insert(passed.begin(), passed.end());
}

void Finding::noteCycle(const VObject& source)
{
    const Repeats::Place place = repeats_.graph().placeOf(source);
    if (place != WalkGraph::kNowhere && repeats_.cycles_.isUnderWay(place))
        passed_.insert(place);
    else
        noteMoreToDo(); // it is another walk that is inside
}

void Finding::noteForeignCode()
{
    noteMoreToDo();
    repeats_.foreignCodeRan();
}

void Finding::noteIdle()
{
    if (isSettled_) repeats_.settle(place_, isKept_, told_, std::move(passed_));
}

} // namespace Quorl
