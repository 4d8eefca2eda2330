#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>
#include <quorl/foundation/Ageable.h>
#include <quorl/foundation/ChunkBase.h>
#include <quorl/foundation/InterfaceBase.h>
#include <quorl/foundation/RefPtr.h>
#include <quorl/values/ValueMap.h>

#include <typeinfo>

namespace Quorl
{

/// A typed, aged datum whose type is only known at run time. Text is the exchange form of all.
///
/// Values never move their own age: that is done by whoever sets them (`VParameter::touchValue`).
/// Nothing is reported; failures are false and null handles.
class QUORL_API VValueBase : public Tolmen::ReferenceBase<VValueBase>
{
public:
    /// A copy starts without components, like a new value.
    VValueBase();
    VValueBase(const VValueBase& other);
    VValueBase& operator=(const VValueBase& other) = delete;
    ~VValueBase() override;

    virtual const std::type_info& getType() const = 0; ///< of the datum

    /// A new value with the same datum; its age is the clock's present time.
    virtual RefPtr<VValueBase> copy() const = 0;

    /// Takes the datum of `other`. \return false if that is of another type.
    virtual bool getValueFrom(const WeakPtr<VValueBase>& other) = 0;

    /// Reads the datum from its text form. \return false if the text is refused.
    virtual bool setValueFromText(const string& text) = 0;
    virtual string Text() const = 0;

    /// Compares by datum. True also if `other` is dead or of another type.
    virtual bool isDifferentFrom(const WeakPtr<VValueBase>& other) const = 0;

    virtual WeakPtr<VManagedObject> source() = 0;
    virtual bool setSource(const WeakPtr<VManagedObject>& source);

    /// A service that this value stands for; null if it stands for none.
    virtual RefPtr<Tolmen::InterfaceBase> getInterface() const;

    /// The same place each time, as long as the value lives: it is looked at without asking again.
    virtual Ageable& age() = 0;
    virtual const Ageable& age() const = 0;

    virtual WeakPtr<VValueCreator> getValueCreator() const = 0;

    /// `n` elements, each a copy of the datum; null if the type has no chunks.
    virtual RefPtr<Tolmen::ChunkBase> getChunk(unsigned long long n) const = 0;

    /// Tells a component which value it belongs to. \return whether it can be one; the default
    /// cannot, so that plain values put into `components` are never given out.
    virtual bool setContainerValue(const WeakPtr<VValueBase>& container);

    /// The counterpart of `getInterface`. \return whether the service was taken.
    virtual bool setInterface(const RefPtr<Tolmen::InterfaceBase>& interface);

    /// The sub-value `name`, which is told its container first; null if there is none alive or it
    /// refuses. The empty name gives this value itself.
    RefPtr<VValueBase> component(const string& name) const;

    /// The age of "no value": that of the clock when this was first asked. Not `Ooooold`.
    static const Ageable& Undefined();

    ValueMap components;
};

} // namespace Quorl

namespace Tolmen
{
extern template class ReferenceBase<Quorl::VValueBase>;
} // namespace Tolmen
