#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>
#include <quorl/foundation/InterfaceBase.h>
#include <quorl/foundation/RefPtr.h>

#include <list>
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

    // Places for a breakpoint or a trace; they do nothing.
    static void accept_info_check(const string& name, const std::type_info& type);
    static void accept_info_check_yes(const string& name, const std::type_info& type);
    static void accept_info_check_no(const string& name, const std::type_info& type);

    const std::type_info* type;              ///< of the output parameter that is wanted; not owned
    string name;                             ///< of the output; may be empty
    double weight = 1.0;                     ///< for modules
    RefPtr<Tolmen::InterfaceBase> interface; ///< for a child where the parent has no such output
    std::vector<string> names;               ///< for modules
    string suffix;                           ///< for modules
};

/// The form in which a creator answers what it can take.
using VAcceptInfoList = std::list<RefPtr<VAcceptInfo>>;

/// Appends a text to the suffix of each record. Deliberate: the records themselves change, not
/// copies of them.
/// \pre all entries are alive.
/// \return the same handles.
QUORL_API VAcceptInfoList operator&(const VAcceptInfoList& list, const string& text);

/// Multiplies the weight of each record, in the same way.
QUORL_API VAcceptInfoList operator*(const VAcceptInfoList& list, double factor);

} // namespace Quorl

namespace Tolmen
{
extern template class ReferenceBase<Quorl::VAcceptInfo>;
} // namespace Tolmen
