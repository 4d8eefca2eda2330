#include "Harm.h"

static Quorl::VCreator<Harmless> creator("", {.text = "in harm"});

ZELM_MODULE(harm)
{
    return true;
}
