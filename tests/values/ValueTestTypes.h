#pragma once

#include <quorl/values/VValue.h>
#include <quorl/values/ValueNotifierList.h>
#include <tests/support/Observer.h>

/// What the tests of values and pools share.
namespace QuorlTest
{

inline Quorl::RefPtr<Quorl::VValueBase> makeNumber(int datum)
{
    return Quorl::RefPtr<Quorl::VValueBase>(new Quorl::VValue<int>(datum));
}

/// A list with a default value, such as a parameter is, and an observer.
class Key final : public Quorl::ValueNotifierList
{
public:
    explicit Key(int datum) : default_(makeNumber(datum)) { addNotifier(observer); }
    const Quorl::RefPtr<Quorl::VValueBase>& DefaultValue() const override { return default_; }

    Quorl::RefPtr<Observer> observer = makeObserver();

private:
    Quorl::RefPtr<Quorl::VValueBase> default_;
};

inline Quorl::RefPtr<Key> makeKey(int datum)
{
    return Quorl::RefPtr<Key>(new Key(datum));
}

} // namespace QuorlTest
