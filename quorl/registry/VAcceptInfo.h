#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>
#include <quorl/foundation/InterfaceBase.h>
#include <quorl/foundation/RefPtr.h>

#include <typeinfo>
#include <vector>

namespace Quorl
{

/// One way in which a creator can take an object as an input.
class QUORL_API VAcceptInfo : public Tolmen::ReferenceBase<VAcceptInfo>
{
public:
    VAcceptInfo(const std::type_info& outputType, const string& outputName);
    VAcceptInfo(const std::type_info& outputType,
                const RefPtr<Tolmen::InterfaceBase>& childInterface);
    ~VAcceptInfo() override;

    const std::type_info* type; ///< of the output parameter that is wanted; not owned
    string name;                ///< of the output; may be empty
    double weight = 1.0;
    RefPtr<Tolmen::InterfaceBase> interface; ///< for a child where the parent has no such output
    std::vector<string> names;               ///< for modules
    string suffix;
};

} // namespace Quorl

namespace Tolmen
{
extern template class ReferenceBase<Quorl::VAcceptInfo>;
} // namespace Tolmen
