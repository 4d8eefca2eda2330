#pragma once

#include <quorl/Export.h>
#include <quorl/registry/VCreationPreferences.h>
#include <quorl/slots/VParameter.h>
#include <quorl/values/VValue.h>
#include <quorl/values/ValuePool.h>

namespace Quorl
{

/// A parameter whose values are of the type `T`.
template <class T>
class QUORL_TEMPLATE_API VValueParameter : public VParameter
{
public:
    /// \param initialValue null makes a parameter of no type, without copies and values.
    VValueParameter(const RefPtr<VValue<T>>& initialValue, const string& parameterName,
                    const RefPtr<VCreationPreferences>& creationPreferences = {})
        : VParameter(initialValue, parameterName, creationPreferences),
          value(initialValue ? initialValue.rawptr() : nullptr)
    {
    }

    /// With the same name, preferences and locality, a default value of its own, and a copy of each
    /// variable. What follows the parameter (actions, users, constraints, properties, undo) stays
    /// with it.
    RefPtr<VParameter> copy() const override;
    RefPtr<VValueBase> createLocalVariable(const RefPtr<ValuePool>& pool) const override;
    bool setGlobalValue(const RefPtr<VValueBase>& given, const string& member) const override;
    RefPtr<VValueBase> newValue() const override
    {
        return defaultValue ? defaultValue->copy() : RefPtr<VValueBase>();
    }

    VValue<T>* value; ///< the default value, which the base owns; may be null
};

template <class T>
RefPtr<VParameter> VValueParameter<T>::copy() const
{
    if (!defaultValue) return {};
    const RefPtr<VValueParameter<T>> copied(
        new VValueParameter(RefPtr<VValue<T>>(newValue()), name, preferences));
    copied->local = local;
    if (local) copied->copyShadows(this);
    return copied;
}

template <class T>
RefPtr<VValueBase> VValueParameter<T>::createLocalVariable(const RefPtr<ValuePool>& pool) const
{
    const RefPtr<VValueBase> variable = newValue();
    if (!variable) return {};
    addShadow(pool); // first: a variable that nobody knows of could not be removed
    pool->createVariable(this, variable);
    return variable;
}

template <class T>
bool VValueParameter<T>::setGlobalValue(const RefPtr<VValueBase>& given, const string& member) const
{
    const RefPtr<VValueBase> target =
        defaultValue ? defaultValue->component(member) : defaultValue.value();
    return target && target->getValueFrom(given);
}

extern template class VValueParameter<double>;

} // namespace Quorl
