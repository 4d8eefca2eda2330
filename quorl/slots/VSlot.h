#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>
#include <quorl/foundation/Ageable.h>
#include <quorl/foundation/Intercube.h>
#include <quorl/foundation/Rare.h>
#include <quorl/foundation/RefPtr.h>
#include <quorl/foundation/Watched.h>

#include <cstdint>
#include <set>
#include <typeinfo>

namespace Quorl
{

/// A named place of an object at which a parameter is plugged in. One that stands among the inputs
/// of a container is an input, one among its outputs an output.
///
/// The parameter holds the value; the slot adds the name under which its owner knows it, the member
/// of it that is meant, and the moment of the last connection. To connect two objects is to put the
/// upstream one's output parameter into the downstream one's input slot.
///
/// Owns its parameter, not its container. Threads: no lock.
class QUORL_API VSlot : public Tolmen::ReferenceBase<VSlot>
{
public:
    /// Bound to nothing.
    VSlot();

    /// Without an owner, it reports the state of its handles and prints its name and member, and
    /// goes on.
    VSlot(VSlotContainer* owner, const RefPtr<VParameter>& parameter, const string& name,
          const string& member);
    VSlot(const VSlot&) = delete;
    VSlot& operator=(const VSlot&) = delete;

    /// Taints the connection validators of the live object that provided the parameter: it has lost
    /// a connection.
    ~VSlot() override;

    /// Changes what the slot shows; the only place where that happens. Stamps this end of the
    /// connection, and one tick later the output slot of the parameter's source, if it has one.
    /// \return false, and no age moves, if the slot shows that already.
    bool assignParameter(const RefPtr<VParameter>& parameter, const string& member);

    /// Attaches a parameter, as a whole, by `VSlotContainer::attachParameter`.
    /// \return false for a dead parameter; otherwise what that answers.
    bool attachSource(const RefPtr<VParameter>& parameter);

    /// The same with what another slot shows. Deliberate: the other's member is not carried over.
    bool attachSlot(const RefPtr<VSlot>& other);

    /// As young as the last connection or the last change of the value, whichever came later.
    const Ageable& age(const RefPtr<ValuePool>& pool) const;

    /// The age of the value alone; `Ooooold` without one. Never makes a variable.
    const Ageable& ValueAge(const RefPtr<ValuePool>& pool) const;

    /// What the slot shows in a pool. Makes the variable of a local parameter.
    RefPtr<VValueBase> getValueBase(const RefPtr<ValuePool>& pool) const;

    /// Whether this is newer than the owner is, in a pool. False without an owner.
    bool isNew(const RefPtr<ValuePool>& pool) const;

    const std::type_info& getType() const; ///< of the member; void without a parameter

    RefPtr<VManagedObject> getSource() const; ///< the object that provides the parameter; or null

    /// The owner of a slot that shows a parameter of somebody else; null for any other.
    RefPtr<VSlotContainer> getExternalOwner() const;

    void setClass(const string& inputClassName);

    static WeakPtr<VManagedObjectBase> getVObjectPtr(VObject* object); ///< null for null

    /// Has the owner make and attach a new upstream object for this slot.
    /// \return null if the owner is no `VObject`, if the creator makes no objects, or could not.
    RefPtr<VObject> createInput(const WeakPtr<VInputCreatorBase>& inputCreator, const string& name,
                                Tolmen::Intercube& context);

    WeakPtr<VSlotContainer> Owner;
    Tolmen::Watched<RefPtr<VParameter>>
        Parameter; ///< an input keeps the upstream parameter alive; may be null
    string Name;
    string Member; ///< what of a structured parameter is meant; empty means all of it
    Ageable ConnectionTime{Ageable::Ooooold}; ///< when it last got a parameter
    bool Propagates : 1 = false;              ///< `connectSlots` may pass it on
    bool Cached : 1 = false;                  ///< `YoungestUncachedInput` passes over it
    bool Unbound : 1 = false;                 ///< made without a container
    bool Spare : 1 = false;
    Tolmen::Watched<std::int32_t> InputClass = 0;
    string Text1; ///< for modules
    string Text2; ///< for modules
    Tolmen::Rare<std::set<RefPtr<ValueNotifier>>>
        Notifiers; ///< bound to the slot, released with it
};

} // namespace Quorl

namespace Tolmen
{
extern template class ReferenceBase<Quorl::VSlot>;
} // namespace Tolmen
