#include "Harm.h"

static Quorl::VCreator<Harmless> creator("Harm/A");

ZELM_MODULE(harm)
{
    return false;
}
