#include <quorl/kit/Module.h>
#include <quorl/modules/VModule.h>
#include <quorl/modules/VModules.h>

/// Takes hold of another module when it is loaded.
ZELM_MODULE(grasping)
{
    static const Quorl::RefPtr<Quorl::VModule> other = Quorl::VModules::find("versioned.zelm");
    return true;
}
