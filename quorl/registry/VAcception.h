#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>
#include <quorl/foundation/RefPtr.h>

namespace Quorl
{

/// That a creator can take an object as an input, and in which way.
class QUORL_API VAcception
{
public:
    VAcception();
    VAcception(const RefPtr<VAcceptInfo>& way, const RefPtr<VCreatorBase>& acceptor);
    VAcception(const VAcception& other);
    VAcception& operator=(const VAcception& other);
    ~VAcception();

    RefPtr<VAcceptInfo> info;
    RefPtr<VCreatorBase> creator;
};

} // namespace Quorl
