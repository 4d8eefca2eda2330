#include <quorl/foundation/Typename.h>
#include <quorl/registry/VAcceptInfo.h>
#include <quorl/slots/VParameter.h>
#include <quorl/slots/VSlot.h>
#include <quorl/slots/VSlotContainer.h>
#include <quorl/slots/VSlotTables.h>
#include <quorl/values/VValueBase.h>

#include <cstdio>
#include <mutex>

namespace Quorl
{
namespace
{

using OutputLock = std::lock_guard<const Tolmen::mutex>;

/// Goes through the live outputs of a type, all for `void`, until `stop` answers true.
/// \return the one that stopped it; null if none did.
template <class Stop>
RefPtr<VSlot> searchOutputs(const VSlotTables& tables, const std::type_info& type, Stop&& stop)
{
    const OutputLock lock(tables.OutputMutex);
    const bool all = type == typeid(void);
    auto entry = all ? tables.Outputs.begin() : tables.Outputs.lower_bound(type);
    const auto end = all ? tables.Outputs.end() : tables.Outputs.upper_bound(type);
    for (; entry != end; ++entry)
    {
        const RefPtr<VSlot> slot = entry->second;
        if (slot && stop(entry->first.get(), slot)) return slot;
    }
    return {};
}

} // namespace

bool VSlotContainer::hasOtherSource(const VParameter& parameter) const
{
    return parameter.source && !(parameter.source == self);
}

RefPtr<VSlot> VSlotContainer::registerOutputSlot(const RefPtr<VParameter>& parameter,
                                                 const string& name, const std::type_info& type,
                                                 const string& member)
{
    const RefPtr<VSlot> slot(
        new VSlot(this, parameter, name.empty() ? parameter->Name() : name, member));
    {
        const OutputLock lock(Slots->OutputMutex);
        Slots->Outputs.emplace(type, slot);
    }
    parameter->setSource(WeakPtr<VSlotContainer>(this));
    return slot;
}

bool VSlotContainer::registerOutput(const RefPtr<VParameter>& parameter, const string& name)
{
    if (!parameter) return false;
    if (hasOtherSource(*parameter))
    {
        std::printf("VSlotContainer::registerOutput(RefPtr<VParameter>) Parameter=%s, type=%s, "
                    "as=%s): NOT ADDED - INVALID PARAMETER SOURCE!\n",
                    parameter->Name().c_str(), Tolmen::Typename(parameter->getType()).c_str(),
                    name.c_str());
        return false;
    }
    registerOutputSlot(parameter, name, parameter->getType(), "");
    return true;
}

bool VSlotContainer::registerOutput(const RefPtr<VSlot>& slot)
{
    if (!slot || !slot->Parameter || hasOtherSource(*slot->Parameter)) return false;
    {
        const OutputLock lock(Slots->OutputMutex);
        Slots->Outputs.emplace(slot->getType(), slot);
    }
    slot->Parameter->setSource(WeakPtr<VSlotContainer>(this));
    return true;
}

bool VSlotContainer::registerOutput(const RefPtr<VParameter>& parameter, const string& name,
                                    const std::type_info& type, const string& member)
{
    if (!parameter || hasOtherSource(*parameter)) return false;
    registerOutputSlot(parameter, name, type, member);
    return true;
}

bool VSlotContainer::registerOutput(const RefPtr<VParameter>& parameter, const std::type_info& type,
                                    const string& member)
{
    return registerOutput(parameter, "", type, member);
}

RefPtr<VSlot> VSlotContainer::getOutput(const string& name) const
{
    return searchOutputs(
        *Slots, typeid(void),
        [&](const std::type_info&, const RefPtr<VSlot>& slot) { return slot->Name == name; });
}

RefPtr<VSlot> VSlotContainer::findOutputSlot(const RefPtr<VParameter>& parameter) const
{
    return searchOutputs(*Slots, typeid(void),
                         [&](const std::type_info&, const RefPtr<VSlot>& slot) {
                             return slot->Parameter == parameter;
                         });
}

int VSlotContainer::getNumberOfOutputs() const
{
    return static_cast<int>(Slots->Outputs.size());
}

RefPtr<Tolmen::StringList> VSlotContainer::getOutputs(const std::type_info& type) const
{
    const OutputLock lock(Slots->OutputMutex);
    RefPtr<Tolmen::StringList> names(new Tolmen::StringList);
    const auto [begin, end] = Slots->Outputs.equal_range(type);
    for (auto entry = begin; entry != end; ++entry)
        if (entry->second) names->push_back(entry->second->Name);
    return names;
}

int VSlotContainer::iterateOutputs(VOutputIterator& visitor, const std::type_info& type) const
{
    const RefPtr<VSlotContainer> held = heldForVisits();
    int count = 0;
    searchOutputs(*Slots, type, [&](const std::type_info& key, const RefPtr<VSlot>& slot) {
        ++count;
        return !visitor.apply(key, slot);
    });
    return count;
}

bool VSlotContainer::implements(const std::type_info& type) const
{
    const OutputLock lock(Slots->OutputMutex);
    return Slots->Outputs.contains(type);
}

bool VSlotContainer::provides(const RefPtr<VSlot>& slot) const
{
    return slot && slot->Parameter && VSlotContainer::implements(slot->getType());
}

RefPtr<VParameter> VSlotContainer::getImplementation(const std::type_info& type, const string& name,
                                                     const string& member) const
{
    const RefPtr<VSlot> slot = getImplementationSlot(type, name, member);
    return slot ? slot->Parameter : RefPtr<VParameter>();
}

RefPtr<VSlot> VSlotContainer::getImplementationSlot(const std::type_info& type, const string& name,
                                                    const string& member) const
{
    const OutputLock lock(Slots->OutputMutex);
    const auto [begin, end] = Slots->Outputs.equal_range(type);
    for (auto entry = begin; entry != end; ++entry)
    {
        const RefPtr<VSlot>& slot = entry->second;
        if (slot && (name.empty() || (slot->Name == name && slot->Member == member))) return slot;
    }
    return {};
}

std::list<RefPtr<VAcceptInfo>> VSlotContainer::getAcceptInfoList(const std::type_info& type) const
{
    const OutputLock lock(Slots->OutputMutex);
    std::list<RefPtr<VAcceptInfo>> infos;
    const auto [begin, end] = Slots->Outputs.equal_range(type);
    for (auto entry = begin; entry != end; ++entry)
        if (entry->second) infos.push_back(new VAcceptInfo(type, entry->second->Name));
    return infos;
}

} // namespace Quorl
