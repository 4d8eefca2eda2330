#include <quorl/objects/Finding.h>

#include <algorithm>

namespace Quorl
{

void Finding::noteTold(const Ageable& validator)
{
    notePlace(&validator);
    told_ = std::min(told_, repeats_.connections());
}

void Finding::noteAnswer(const VObject& source)
{
    isSettled_ = isSettled_ && repeats_.isSettled(source);
    if (!isSettled_) return;
    const Repeats::Met& met = *repeats_.metAt(source);
    isKept_ = isKept_ && met.isKept;
    told_ = std::min(told_, met.told);
}

void Finding::noteForeignCode()
{
    noteMoreToDo();
    repeats_.foreignCodeRan();
}

void Finding::noteIdle()
{
    if (isSettled_) repeats_.settle(place_, isKept_, told_);
}

} // namespace Quorl
