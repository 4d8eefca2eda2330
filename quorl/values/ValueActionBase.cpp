#include <quorl/values/ValueActionBase.h>

#include <quorl/values/VValueBase.h>
#include <quorl/values/ValuePool.h>

namespace Quorl
{

ValueActionBase::~ValueActionBase() = default;

void ValueActionBase::valueChanged(const RefPtr<VValueBase>& value, const WeakPtr<ValuePool>& pool,
                                   const ValueNotifierList* caller, const ValueMap* changes)
{
    action(value, pool, caller, changes);
}

} // namespace Quorl
