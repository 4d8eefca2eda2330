#include "Harm.h"

#include <quorl/modules/LeaveItems.h>
#include <quorl/modules/VModules.h>

#include <utility>

static Quorl::VCreator<Harmless> creator("Harm/A");

ZELM_MODULE(harm)
{
    static bool isFirst = true;
    if (!std::exchange(isFirst, false)) return true;
    std::printf("loaded: %d\n", Quorl::LoadVModule(kOwnPath) ? 1 : 0);
    Quorl::LeaveItems remover;
    std::printf("unloaded: %d\n", Quorl::UnloadVModule(kOwnPath, remover) ? 1 : 0);
    return true;
}
