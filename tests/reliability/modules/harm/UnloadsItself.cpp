#include "Harm.h"

#include <quorl/modules/LeaveItems.h>
#include <quorl/modules/VModules.h>

static Quorl::VCreator<Harmless> creator("Harm/A");

ZELM_MODULE(harm)
{
    Quorl::LeaveItems remover;
    std::printf("known: %d\n", Quorl::UnloadVModule(kOwnPath, remover) ? 1 : 0);
    return true;
}
