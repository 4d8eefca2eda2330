#include "Harm.h"

static Quorl::VCreator<Harmless> creator("Harm/A");

ZELM_PLUGIN_STRINGS("");

/// Bears the name of the init routine, and is none.
extern "C" __attribute__((visibility("default"))) int initialise __asm__(ZELM_INIT_PREFIX "harm");
int initialise = 5;
