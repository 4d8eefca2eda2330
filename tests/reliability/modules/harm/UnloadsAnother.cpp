#include "Harm.h"

#include <quorl/modules/LeaveItems.h>
#include <quorl/modules/VModules.h>

ZELM_MODULE(harm)
{
    Quorl::LeaveItems remover;
    return Quorl::UnloadVModule("./first.zelm", remover);
}
