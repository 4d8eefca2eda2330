#include <quorl/modules/VLoaderInfo.h>

#include <quorl/modules/VLoader.h>

namespace Quorl
{

VLoaderInfo::VLoaderInfo(const string& reference, const WeakPtr<VLoader>& origin)
    : url(reference), loader(origin)
{
}

VLoaderInfo::~VLoaderInfo() = default;

} // namespace Quorl
