#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>
#include <quorl/foundation/Interface.h>
#include <quorl/foundation/RefPtr.h>

namespace Quorl
{

/// A service by which a parameter can be provided by an object that is made for it.
class QUORL_API VParameterObjectCreator : public Tolmen::Interface<VParameterObjectCreator>
{
public:
    VParameterObjectCreator();
    ~VParameterObjectCreator() override;

    virtual RefPtr<VObject> createObject() const = 0;

    /// Makes an object and takes its output of that type and name, whose source it becomes. The
    /// parameter holds the object only weakly: it lives on by its other owners, such as the
    /// registry.
    /// \return null if there is no object, or no such output.
    RefPtr<VParameter> getImplementation(const std::type_info& type, const string& name);
};

} // namespace Quorl
