#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>
#include <quorl/foundation/Interface.h>
#include <quorl/foundation/RefPtr.h>

namespace Quorl
{

/// Where something that was loaded came from.
class QUORL_API VLoaderInfo : public Tolmen::Interface<VLoaderInfo>
{
public:
    VLoaderInfo(const string& reference, const WeakPtr<VLoader>& origin);
    ~VLoaderInfo() override;

    string url; ///< the reference, as it was given
    WeakPtr<VLoader> loader;
};

} // namespace Quorl
