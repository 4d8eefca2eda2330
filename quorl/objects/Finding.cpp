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
    const Repeats::Met& met = *repeats_.metAt(source);
    isKept_ = isKept_ && met.isKept;
    told_ = std::min(told_, met.told);
    if (met.isInCycles) cycles_.merge(repeats_.cyclesOf(source));
}

void Finding::noteCycle(const VObject& source)
{
    const Repeats::Met* const met = repeats_.metAt(source);
    if (met && met->isUnderWay)
        cycles_.insert(repeats_.graph().placeOf(source));
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
    if (isSettled_) repeats_.settle(place_, isKept_, told_, std::move(cycles_));
}

} // namespace Quorl
