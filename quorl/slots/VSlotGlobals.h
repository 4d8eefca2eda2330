#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>
#include <quorl/foundation/RefPtr.h>

#include <typeinfo>

namespace Quorl
{

/// Operations on slots for code that sees a `VSlotContainer` just as a declaration.
class QUORL_API VSlotGlobals
{
public:
    /// As `VSlotContainer::addParameter`.
    static RefPtr<VSlot> addParameter(VSlotContainer* container, const string& name,
                                      int expertLevel, const RefPtr<VParameter>& parameter,
                                      bool replace);

    /// The same for an object; if that is no slot container, the new slot belongs to nobody, which
    /// its constructor reports.
    static RefPtr<VSlot> addParameter(const WeakPtr<VManagedObjectBase>& object, const string& name,
                                      int expertLevel, const RefPtr<VParameter>& parameter,
                                      bool replace);

    /// As `VSlotContainer::addSlot`.
    static RefPtr<VSlot> addSlot(VSlotContainer* container, const RefPtr<VSlot>& slot,
                                 int expertLevel, bool replace);

    /// Called by typed accessors when a slot does not hold the type that they expect. Both do
    /// nothing: a place for a breakpoint.
    static void assertionFail(const RefPtr<VSlot>& slot, const std::type_info& expected);
    static void assertionFail(const VSlot* slot, const std::type_info& expected);
};

} // namespace Quorl
