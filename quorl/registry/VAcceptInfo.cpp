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

void VAcceptInfo::accept_info_check(const string& /*name*/, const std::type_info& /*type*/) {}
void VAcceptInfo::accept_info_check_yes(const string& /*name*/, const std::type_info& /*type*/) {}
void VAcceptInfo::accept_info_check_no(const string& /*name*/, const std::type_info& /*type*/) {}

VAcceptInfoList operator&(const VAcceptInfoList& list, const string& text)
{
    for (const RefPtr<VAcceptInfo>& info : list) info->suffix += text;
    return list;
}

VAcceptInfoList operator*(const VAcceptInfoList& list, double factor)
{
    for (const RefPtr<VAcceptInfo>& info : list) info->weight *= factor;
    return list;
}

} // namespace Quorl
