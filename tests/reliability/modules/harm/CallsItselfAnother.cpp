#include "Harm.h"

static const bool isDone = [] {
    Quorl::VManagedObject::CurrentLoadModule = "./last.zelm";
    return true;
}();
static Quorl::VCreator<Harmless> creator("Harm/A");

ZELM_MODULE(harm)
{
    return isDone;
}
