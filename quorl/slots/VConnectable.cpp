#include <quorl/slots/VConnectable.h>

#include <quorl/slots/VParameter.h>
#include <quorl/slots/VSlot.h>

namespace Quorl
{

VConnectable::VConnectable() = default;
VConnectable::~VConnectable() = default;

RefPtr<VParameter> VConnectable::CreatedFilteredConnection(const RefPtr<VParameter>& /*parameter*/)
{
    return {};
}

void VConnectable::adjustConnections(const RefPtr<VSlot>& /*slot*/,
                                     const RefPtr<VParameter>& /*parameter*/)
{
}

} // namespace Quorl
