#include <quorl/modules/VInitialization.h>

#include <cstring>

namespace Quorl
{
namespace
{

constexpr const char* kApiVersion = "ZELM_API_VERSION";

} // namespace

const char* VInitialization::ZelmReleaseString = "Zelm, Quorl kernel 0.1.0";

VInitialization::VInitialization(const char* pluginName) : plugin(pluginName) {}
VInitialization::~VInitialization() = default;

bool VInitialization::IsCompatible(const char* apiVersion)
{
    version = apiVersion;
    return acceptable();
}

bool VInitialization::acceptable() const
{
    return version && std::strcmp(version, kApiVersion) == 0;
}

void VInitialization::initPlugin(InitPluginReason /*reason*/, const char* /*plugin*/,
                                 const char* /*directory*/)
{
}

} // namespace Quorl
