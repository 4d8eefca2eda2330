#include <quorl/registry/VAcception.h>

#include <quorl/registry/VAcceptInfo.h>
#include <quorl/registry/VCreatorBase.h>

namespace Quorl
{

VAcception::VAcception() = default;

VAcception::VAcception(const RefPtr<VAcceptInfo>& way, const RefPtr<VCreatorBase>& acceptor)
    : info(way), creator(acceptor)
{
}

VAcception::VAcception(const VAcception& other) = default;
VAcception& VAcception::operator=(const VAcception& other) = default;
VAcception::~VAcception() = default;

} // namespace Quorl
