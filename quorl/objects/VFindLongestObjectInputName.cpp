#include <quorl/objects/VFindLongestObjectInputName.h>

#include <quorl/slots/VSlot.h>

namespace Quorl
{

bool VFindLongestObjectInputName::apply(const RefPtr<VSlot>& slot, int /*expertLevel*/)
{
    if (slot->Name.size() > Longest.size()) Longest = slot->Name;
    return true;
}

} // namespace Quorl
