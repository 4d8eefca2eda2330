#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>
#include <quorl/foundation/Intercube.h>
#include <quorl/foundation/RefPtr.h>

namespace Quorl
{

/// A cube that can be held by handles: what is attached to a request. No relation to `VTask`.
struct QUORL_API Task : Tolmen::ReferenceBase<Task>, virtual Tolmen::Intercube
{
    Task();
    ~Task() override;
};

} // namespace Quorl

namespace Tolmen
{
extern template class ReferenceBase<Quorl::Task>;
} // namespace Tolmen
