#include <quorl/registry/VAcceptInfo.h>

namespace Tolmen
{
template class ReferenceBase<Quorl::VAcceptInfo>;
} // namespace Tolmen

namespace Quorl
{

VAcceptInfo::VAcceptInfo(const std::type_info& outputType, const string& outputName)
    : type(&outputType), name(outputName)
{
}

VAcceptInfo::VAcceptInfo(const std::type_info& outputType,
                         const RefPtr<Tolmen::InterfaceBase>& childInterface)
    : type(&outputType), interface(childInterface)
{
}

VAcceptInfo::~VAcceptInfo() = default;

} // namespace Quorl
