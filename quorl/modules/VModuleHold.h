#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>
#include <quorl/foundation/Interface.h>
#include <quorl/foundation/RefPtr.h>

namespace Quorl
{

/// Keeps a module loaded as long as the object that it is added to lives. What is left of the
/// object's destructor may be code of the module, so that the module is let go of later, when
/// modules are next loaded or unloaded.
///
/// Threads: may end on any. That it is let go of while another thread is still inside of the
/// destructor of such an object is for the owner of that thread to exclude.
class QUORL_API VModuleHold : public Tolmen::Interface<VModuleHold>
{
public:
    explicit VModuleHold(const RefPtr<VModule>& held);
    ~VModuleHold() override;

    /// Lets go of the modules whose objects have ended, also of those that do so by it.
    static void letGo();

private:
    class Departing;

    RefPtr<VModule> module_;
};

} // namespace Quorl
