#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>
#include <quorl/foundation/Intercube.h>
#include <quorl/foundation/RefPtr.h>

namespace Quorl
{

/// An observer of values: subscribes with `ValueNotifierList::addNotifier`.
class QUORL_API ValueNotifier : public Tolmen::ReferenceBase<ValueNotifier>,
                                public Tolmen::Intercube
{
public:
    ValueNotifier();
    ~ValueNotifier() override;

    /// A value has a new datum. Runs on the thread of the change, before the value's age moves.
    /// \param pool the context of the change, null if it is none in particular.
    /// \param caller the list from which the change went out.
    /// \param changes what the sender says of the change; may be null.
    virtual void valueChanged(const RefPtr<VValueBase>& value, const WeakPtr<ValuePool>& pool,
                              const ValueNotifierList* caller, const ValueMap* changes) = 0;
};

} // namespace Quorl

namespace Tolmen
{
extern template class ReferenceBase<Quorl::ValueNotifier>;
} // namespace Tolmen
