#include <quorl/modules/LoadVModule.h>

namespace Quorl
{

bool LoadVModule(const string& /*path*/)
{
    return false;
}

bool isModuleLoadable(const string& /*path*/)
{
    return true;
}

} // namespace Quorl
