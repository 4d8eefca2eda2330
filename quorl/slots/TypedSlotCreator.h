#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>
#include <quorl/foundation/RefPtr.h>

#include <typeinfo>

namespace Quorl
{

/// Makes slots for values of one type. Found by the type, or by its readable name; modules provide
/// them.
///
/// Threads: the tables have no lock; they are filled while modules are loaded.
class QUORL_API TypedSlotCreator : public Tolmen::ReferenceBase<TypedSlotCreator>
{
public:
    struct InternalTypeCreatorAccessory; ///< the kernel's own access to both tables

    TypedSlotCreator();
    ~TypedSlotCreator() override;

    /// Makes a slot with a parameter of the type and enters it in `owner`.
    virtual RefPtr<VSlot> createSlot(VSlotContainer* owner, const string& name,
                                     int expertLevel) = 0;

    /// \return null if there is none; a handle that is not alive if the creator has ended.
    static RefPtr<TypedSlotCreator> getTypedSlotCreator(const std::type_info& type);
    static RefPtr<TypedSlotCreator> getTypedSlotCreator(const string& typeName);

    /// Enters a creator in both tables, weakly, in place of an earlier one.
    /// \return false for a dead handle.
    static bool registerTypedSlotCreator(const std::type_info& type,
                                         const WeakPtr<TypedSlotCreator>& creator);

    /// Removes this creator, and no other, from both tables. \return whether it was there.
    static bool unregisterTypedSlotCreator(const std::type_info& type,
                                           const WeakPtr<TypedSlotCreator>& creator);
};

} // namespace Quorl

namespace Tolmen
{
extern template class ReferenceBase<Quorl::TypedSlotCreator>;
} // namespace Tolmen
