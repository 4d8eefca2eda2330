#pragma once

#include <quorl/foundation/RefPtr.h>
#include <quorl/registry/VManagedObject.h>

namespace Quorl
{

/// What a domain keeps for one name: the object, which it owns, and the module that supplied it.
class VCreatorBaseInfo : public Tolmen::ReferenceBase<VCreatorBaseInfo>
{
public:
    VCreatorBaseInfo() = default;
    ~VCreatorBaseInfo() override = default;

    const RefPtr<VManagedObject>& getCreator() const { return Creator; }

    RefPtr<VManagedObject> Creator; ///< null while its module is not loaded
    string ModuleName; ///< path; empty if no module was being loaded when the object was inserted
};

} // namespace Quorl
