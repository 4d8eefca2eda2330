#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>
#include <quorl/foundation/RefPtr.h>

namespace Quorl
{

/// The identity of all that can be found by name: the root of its handles, with one series of
/// numbers for all kinds.
class QUORL_API VManagedObjectBase : public Tolmen::ReferenceBase<VManagedObjectBase>
{
public:
    VManagedObjectBase();
    ~VManagedObjectBase() override;
};

} // namespace Quorl

namespace Tolmen
{
extern template class ReferenceBase<Quorl::VManagedObjectBase>;
} // namespace Tolmen
