#pragma once

#include <quorl/Export.h>
#include <quorl/foundation/Typename.h>
#include <quorl/values/VTypedValueBase.h>
#include <quorl/values/VValueCreator.h>
#include <quorl/values/VValueTrait.h>

#include <cstdint>

namespace Quorl
{

/// The creator of a value type: one for each, for the life of the library that has it.
template <class T>
class QUORL_TEMPLATE_API TypedValueCreator : public VValueCreator
{
public:
    /// A value of `text`, also if `text` is refused.
    RefPtr<VValueBase> create(const string& text, bool& ok) override;

    /// Values of the type that have ended, on the stack as well. Static, as values may outlive
    /// their creator when the process ends.
    static inline constinit std::int32_t destroyedValues = 0;
};

/// A value that holds its datum.
///
/// The type is registered with `VValueCreator` when the library that uses it is loaded, before any
/// of its values exists.
template <class T>
class QUORL_TEMPLATE_API VValue : public VTypedValueBase<T>, public Ageable
{
public:
    VValue() : VValue(T{}) {}
    explicit VValue(const T& datum) : datum_(datum) { static_cast<void>(theTypedValueCreator); }
    VValue(const VValue& other) : VValue(other.datum_) {}
    ~VValue() override { ++TypedValueCreator<T>::destroyedValues; }

    bool getValue(T& datum) const override
    {
        datum = datum_;
        return true;
    }
    bool setValue(const T& datum) override
    {
        datum_ = datum;
        return true;
    }
    bool getValueFrom(const WeakPtr<VValueBase>& other) override
    {
        const WeakPtr<VTypedValueBase<T>> typed = other;
        return typed && typed->getValue(datum_);
    }

    bool setValueFromText(const string& text) override
    {
        return VValueTrait<T>::setValueFromText(datum_, text);
    }
    string Text() const override { return VValueTrait<T>::Text(datum_); }

    RefPtr<VValueBase> copy() const override { return RefPtr<VValueBase>(new VValue(*this)); }

    WeakPtr<VManagedObject> source() override { return {}; }
    Ageable& age() override { return *this; }
    const Ageable& age() const override { return *this; }
    WeakPtr<VValueCreator> getValueCreator() const override { return &myTypedValueCreator(); }
    RefPtr<Tolmen::Chunk<T>> getChunkOfValue(unsigned long long n) const override
    {
        return RefPtr<Tolmen::Chunk<T>>(new Tolmen::Chunk<T>(n, datum_));
    }

    static TypedValueCreator<T>& theTypedValueCreator;

    /// Made and registered under the type's name at first use.
    static TypedValueCreator<T>& myTypedValueCreator();

private:
    T datum_;
};

template <class T>
TypedValueCreator<T>& VValue<T>::theTypedValueCreator = VValue<T>::myTypedValueCreator();

template <class T>
TypedValueCreator<T>& VValue<T>::myTypedValueCreator()
{
    static TypedValueCreator<T> creator;
    [[maybe_unused]] static const bool isRegistered =
        (VValueCreator::registerCreator(&creator, Tolmen::Typename(typeid(T))), true);
    return creator;
}

template <class T>
RefPtr<VValueBase> TypedValueCreator<T>::create(const string& text, bool& ok)
{
    const RefPtr<VValueBase> value(new VValue<T>);
    ok = value->setValueFromText(text);
    return value;
}

extern template class TypedValueCreator<double>;
extern template class VValue<double>;

} // namespace Quorl
