#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>
#include <quorl/foundation/RefPtr.h>

#include <typeinfo>

namespace Quorl
{

/// Visits outputs; true goes on.
class QUORL_API VOutputIterator
{
public:
    virtual ~VOutputIterator();

    /// \param type the type under which the output is registered.
    virtual bool apply(const std::type_info& type, const RefPtr<VSlot>& slot) = 0;
};

} // namespace Quorl
