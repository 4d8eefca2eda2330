#include "Harm.h"

static Quorl::VCreator<Harmless> creator("Harm/A");

ZELM_PLUGIN_STRINGS("");

extern "C" __attribute__((visibility("default"))) bool
initialise(Quorl::VInitialization* initialization) __asm__(ZELM_INIT_PREFIX "harm");
bool initialise([[maybe_unused]] Quorl::VInitialization* initialization)
{
    initialization->IsCompatible(nullptr);
    return true;
}
