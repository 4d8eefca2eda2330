#include "Harm.h"

static Quorl::VCreator<Harmless> creator("Harm/%s%n%s");

ZELM_MODULE(harm)
{
    initialization.title = "%s%n%s";
    return true;
}
