#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>
#include <quorl/slots/VSlotIterator.h>

namespace Quorl
{

/// Remembers the longest name that a walk over inputs comes by, of equally long ones the first: how
/// wide a column of names has to be.
class QUORL_API VFindLongestObjectInputName : public VSlotIterator
{
public:
    bool apply(const RefPtr<VSlot>& slot, int expertLevel) override;

    string Longest;
};

} // namespace Quorl
