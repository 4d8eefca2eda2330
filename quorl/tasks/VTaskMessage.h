#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>
#include <quorl/foundation/RefPtr.h>
#include <quorl/foundation/ReferenceBase.h>

namespace Quorl
{

/// What is sent to a task. The kernel hands it through and never looks inside; derive from it.
class QUORL_API VTaskMessage : public Tolmen::ReferenceBase<VTaskMessage>
{
public:
    VTaskMessage();
    ~VTaskMessage() override;
};

} // namespace Quorl

namespace Tolmen
{
extern template class ReferenceBase<Quorl::VTaskMessage>;
} // namespace Tolmen
