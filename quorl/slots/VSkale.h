#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>
#include <quorl/slots/VConnectable.h>

namespace Quorl
{

/// The smallest container that can be wired: it has slots, and is no managed object.
class QUORL_API VSkale : public VConnectable
{
public:
    VSkale();
    ~VSkale() override;

    static const char* MyName(); ///< the same for all: "uninitialized"
};

} // namespace Quorl
