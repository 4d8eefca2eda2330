#include <quorl/slots/VSlotGlobals.h>

#include <quorl/slots/VParameter.h>
#include <quorl/slots/VSlot.h>
#include <quorl/slots/VSlotContainer.h>

namespace Quorl
{

RefPtr<VSlot> VSlotGlobals::addParameter(VSlotContainer* container, const string& name,
                                         int expertLevel, const RefPtr<VParameter>& parameter,
                                         bool replace)
{
    return container->addParameter(name, expertLevel, parameter, replace);
}

RefPtr<VSlot> VSlotGlobals::addParameter(const WeakPtr<VManagedObjectBase>& object,
                                         const string& name, int expertLevel,
                                         const RefPtr<VParameter>& parameter, bool replace)
{
    if (const WeakPtr<VSlotContainer> container = object)
        return container->addParameter(name, expertLevel, parameter, replace);
    return RefPtr<VSlot>(new VSlot(nullptr, parameter, name, ""));
}

RefPtr<VSlot> VSlotGlobals::addSlot(VSlotContainer* container, const RefPtr<VSlot>& slot,
                                    int expertLevel, bool replace)
{
    return container->addSlot(slot, expertLevel, replace);
}

void VSlotGlobals::assertionFail(const RefPtr<VSlot>& /*slot*/, const std::type_info& /*expected*/)
{
}

void VSlotGlobals::assertionFail(const VSlot* /*slot*/, const std::type_info& /*expected*/) {}

} // namespace Quorl
