#pragma once

#include <quorl/values/ValueNotifier.h>

namespace Quorl
{

/// An observer that is nothing but one action.
class QUORL_API ValueActionBase : public ValueNotifier
{
public:
    ~ValueActionBase() override;

    void valueChanged(const RefPtr<VValueBase>& value, const WeakPtr<ValuePool>& pool,
                      const ValueNotifierList* caller, const ValueMap* changes) override;

    /// Gets the arguments of `valueChanged` as they are.
    virtual void action(const RefPtr<VValueBase>& value, const WeakPtr<ValuePool>& pool,
                        const ValueNotifierList* caller, const ValueMap* changes) = 0;
};

} // namespace Quorl
