#include "Harm.h"

static Quorl::VCreator<Harmless> creator("Good/first");

ZELM_MODULE(harm)
{
    return true;
}
