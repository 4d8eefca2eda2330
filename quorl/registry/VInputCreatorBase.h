#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>
#include <quorl/foundation/RefPtr.h>
#include <quorl/registry/VCreationPreferences.h>
#include <quorl/registry/VManagedDomainObject.h>

#include <typeinfo>

namespace Quorl
{

/// A factory that can supply a value of one type, or several, for an input. All creators stand in
/// its domain.
///
/// To be found by name it has to be constructed; to be found by a type, to be registered for it
/// (`registerVInput`), which `VInputCreator` does.
class QUORL_API VInputCreatorBase : public VManagedDomainObject<VInputCreatorBase>
{
public:
    /// Enters the creator in its domain, which may change its name to a free one.
    /// \param text what the creator tells of its module; kept, not copied. May be null.
    VInputCreatorBase(const string& name, int priority,
                      const RefPtr<VCreationPreferences>& preferences, const char* text);
    ~VInputCreatorBase() override;

    RefPtr<VCreationPreferences> preferences; ///< what it offers; may be null
    int priority = 0;                         ///< as given; the registry keeps its own
    const char* text = nullptr;               ///< not owned
};

extern template class VManagedDomainObject<VInputCreatorBase>;

} // namespace Quorl
