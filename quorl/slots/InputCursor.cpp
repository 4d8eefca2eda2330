#include <quorl/slots/InputCursor.h>

#include <quorl/services/Vprintf.h>
#include <quorl/slots/VSlot.h>
#include <quorl/slots/VSlotContainer.h>

namespace Quorl
{
InputCursor::InputCursor(const VSlotContainer& container, int maxExpertLevel)
    : levels_(container.Slots->Inputs), maxExpertLevel_(maxExpertLevel), level_(levels_.begin())
{
    Vprintf(kTraceVerbosity, "VSlotContainer::iterateInputs(%d): Have %d inputs.\n", maxExpertLevel,
            static_cast<int>(levels_.size()));
}

bool InputCursor::next()
{
    leave(); // whoever ends by this is gone before the next place is looked at
    for (; hasLevel(); ++level_)
    {
        if (nextOfLevel()) return true;
        ++finishedLevels_;
    }
    return false;
}

bool InputCursor::nextOfLevel()
{
    const VNamedInputSet& inputs = level_->second;
    if (!isInLevel_)
        place_ = inputs.begin();
    else
        ++place_;
    for (; place_ != inputs.end(); ++place_)
    {
        if (!*place_) continue;
        isInLevel_ = true;
        Vprintf(kTraceVerbosity, "VSlotContainer::iterateInputs(%d): `%s'\n", maxExpertLevel_,
                (*place_)->Name.c_str());
        slot_ = *place_;
        return true;
    }
    isInLevel_ = false;
    return false;
}

} // namespace Quorl
