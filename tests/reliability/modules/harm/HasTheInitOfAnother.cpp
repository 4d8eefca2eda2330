#include "Harm.h"

static Quorl::VCreator<Harmless> creator("Harm/A");

ZELM_PLUGIN_STRINGS("");

extern "C" __attribute__((visibility("default"))) bool
initialise(Quorl::VInitialization* initialization) __asm__(ZELM_INIT_PREFIX "charm");
bool initialise(Quorl::VInitialization* /*initialization*/)
{
    std::printf("this is never called\n");
    return false;
}
