#pragma once

#include <quorl/Forward.h>
#include <quorl/foundation/RefPtr.h>
#include <quorl/foundation/Typename.h>
#include <quorl/modules/VModuleHold.h>
#include <quorl/objects/VObject.h>
#include <quorl/registry/VCreationPreferences.h>
#include <quorl/slots/VSlot.h>
#include <quorl/slots/VSlotGlobals.h>
#include <quorl/slots/VValueParameter.h>

#include <optional>
#include <type_traits>

namespace Quorl
{

/// The preferences of a parameter that has a value of its own in each context.
inline RefPtr<VCreationPreferences> perContext()
{
    return RefPtr<VCreationPreferences>(new VCreationPreferences("local"));
}

/// The parameter of a slot of the kit. It takes its values out of the pools when it ends, so that
/// none is left behind there whose type belongs to a module; and its copies keep that module
/// loaded, as it does itself.
template <class T>
class SlotParameter final : public VValueParameter<T>
{
public:
    using VValueParameter<T>::VValueParameter;
    ~SlotParameter() override { this->removeAllShadows(); }

    RefPtr<VParameter> copy() const override
    {
        const RefPtr<SlotParameter> copied(
            new SlotParameter(RefPtr<VValue<T>>(this->newValue()), this->name, this->preferences));
        copied->local = this->local;
        if (this->local) copied->copyShadows(this);
        if (const auto hold = this->findInterface(typeid(VModuleHold))) copied->addInterface(hold);
        return copied;
    }
};

/// A slot that an object declares as a member, with values of the type `T`. Use `InputSlot` and
/// `OutputSlot`:
///
///     const InputSlot<Field> heights{*this, "heights"};
///     const InputSlot<double> azimuth{*this, "azimuth", 315.0, perContext()};
///     const OutputSlot<Field> shade{*this, "shade"};
///
/// It must not outlive its object.
template <class T>
class TypedSlot
{
public:
    /// What stands here in the context of a request.
    /// \throws VObject::ExecutionStatus, which ends the update as failed, if that is no `T`.
    T operator()(const VRequest& request) const;

    /// The same in a pool, or the default for a null one; nothing if there is no `T`.
    /// That is told to `VSlotGlobals::assertionFail`.
    std::optional<T> read(const RefPtr<ValuePool>& pool) const;

    /// Gives what stands here another value in a pool, or in all contexts with a null one, tells
    /// whoever follows it, and makes it younger than all that is.
    /// \pre the slot has the parameter that it was made with, or one of the type `T`.
    void set(const RefPtr<ValuePool>& pool, const T& datum) const;

    const RefPtr<VSlot>& slot() const { return slot_; }

protected:
    static RefPtr<VParameter> makeParameter(VSlotContainer& owner, const string& name,
                                            const T& initial,
                                            const RefPtr<VCreationPreferences>& preferences);

    RefPtr<VSlot> slot_;
};

/// An input with a parameter of its own, in whose place another's can be plugged.
template <class T>
class InputSlot : public TypedSlot<T>
{
public:
    /// \param initial what stands here until something is set or plugged in.
    /// \param preferences of the parameter; with the word "local" it has a value in each context.
    /// \param expertLevel lower means more basic.
    InputSlot(VSlotContainer& owner, const string& name, const T& initial = T(),
              const RefPtr<VCreationPreferences>& preferences = {}, int expertLevel = 0)
    {
        this->slot_ = owner.addParameter(
            name, expertLevel, this->makeParameter(owner, name, initial, preferences), false);
    }
};

/// An output of an object: what it computes, by default in each context for itself.
template <class T>
class OutputSlot : public TypedSlot<T>
{
public:
    OutputSlot(VSlotContainer& owner, const string& name, const T& initial = T(),
               const RefPtr<VCreationPreferences>& preferences = perContext())
    {
        const RefPtr<VParameter> parameter = this->makeParameter(owner, name, initial, preferences);
        owner.registerOutput(parameter, name);
        this->slot_ = owner.findOutputSlot(parameter);
    }

    /// Gives the output its value in the context of a request, tells whoever follows it, and makes
    /// it younger than all that is.
    void set(const VRequest& request, const T& datum) const { set(request.Pool, datum); }
    using TypedSlot<T>::set;
};

template <class T>
void TypedSlot<T>::set(const RefPtr<ValuePool>& pool, const T& datum) const
{
    const auto setThrough = [&datum](const RefPtr<VParameter>& parameter,
                                     const RefPtr<ValuePool>& context) {
        const RefPtr<VValueBase> value = parameter->getValue(context, "");
        value.viewAs<VTypedValueBase<T>>()->setValue(datum);
        parameter->notifyValueChange(value, context, "", {}, nullptr, nullptr);
    };
    if constexpr (std::is_trivially_destructible_v<T>)
        setThrough(slot_->Parameter, pool);
    else // the former datum may have the last shares of both
        setThrough(RefPtr<VParameter>(slot_->Parameter), RefPtr<ValuePool>(pool));
}

template <class T>
std::optional<T> TypedSlot<T>::read(const RefPtr<ValuePool>& pool) const
{
    const RefPtr<VValueBase> value = slot_->getValueBase(pool);
    const auto* const typed = value.viewAs<VTypedValueBase<T>>();
    T datum{};
    if (typed && typed->getValue(datum)) return datum;
    VSlotGlobals::assertionFail(slot_, typeid(T));
    return std::nullopt;
}

template <class T>
T TypedSlot<T>::operator()(const VRequest& request) const
{
    if (std::optional<T> datum = read(request.Pool)) return *datum;
    throw VObject::ExecutionStatus(VObject::ExecutionStatus::Failed,
                                   "The slot " + slot_->Name + " shows " +
                                       Tolmen::Typename(slot_->getType()) + ", not " +
                                       Tolmen::Typename(typeid(T)) + ".");
}

template <class T>
RefPtr<VParameter> TypedSlot<T>::makeParameter(VSlotContainer& owner, const string& name,
                                               const T& initial,
                                               const RefPtr<VCreationPreferences>& preferences)
{
    const RefPtr<VParameter> parameter(
        new SlotParameter<T>(RefPtr<VValue<T>>(new VValue<T>(initial)), name, preferences));
    parameter->setCreator(&owner);
    if (preferences && preferences->contains("local")) parameter->Localize();
    return parameter;
}

} // namespace Quorl
