#pragma once

#include <quorl/values/VValueBase.h>
#include <quorl/values/ValueNotifier.h>
#include <quorl/values/ValuePool.h>

#include <functional>
#include <string>
#include <vector>

namespace QuorlTest
{

/// An observer that notes what it is told.
class Observer final : public Quorl::ValueNotifier
{
public:
    struct Call
    {
        std::string text; ///< of the value; "null" without one
        Quorl::WeakPtr<Quorl::ValuePool> pool;
        const Quorl::ValueNotifierList* caller;
        const Quorl::ValueMap* changes;
        long long age; ///< of the value at that moment
    };

    void valueChanged(const Quorl::RefPtr<Quorl::VValueBase>& value,
                      const Quorl::WeakPtr<Quorl::ValuePool>& pool,
                      const Quorl::ValueNotifierList* caller,
                      const Quorl::ValueMap* changes) override
    {
        const Quorl::VValueBase* const live = value ? value.rawptr() : nullptr;
        calls.push_back(
            {live ? live->Text() : "null", pool, caller, changes, live ? live->age().stamp() : -1});
        if (whenCalled) whenCalled();
    }

    std::vector<Call> calls;
    std::function<void()> whenCalled;
};

inline Quorl::RefPtr<Observer> makeObserver()
{
    return Quorl::RefPtr<Observer>(new Observer);
}

} // namespace QuorlTest
