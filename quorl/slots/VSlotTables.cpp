#include <quorl/slots/VSlotTables.h>

#include <quorl/slots/VSlot.h>

#include <cstdio>

namespace Quorl
{

VNamedInputSet::VNamedInputSet() = default;

VNamedInputSet::~VNamedInputSet()
{
    Tolmen::Watch::shapeChanges();
    for (const RefPtr<VSlot>& slot : *this)
        if (!slot && slot.referer)
            std::printf("VSlotContainer::~NamedInputSet(): ALERT! Invalid Slot "
                        "weakrefs=%d/strongrefs=%d\n",
                        slot.referer->weak.load(), slot.referer->strong.load());
}

VSlotTables::VSlotTables() = default;

VSlotTables::~VSlotTables()
{
    Tolmen::Watch::shapeChanges(); // the container ends
}

} // namespace Quorl
