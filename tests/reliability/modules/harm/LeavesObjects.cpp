#include "Harm.h"

#include <quorl/kit/Network.h>
#include <quorl/registry/VAcceptInfo.h>
#include <quorl/registry/VCreatorBase.h>

static Quorl::VCreator<Harmless> creator("Harm/A");

/// Objects of the module outlive the routine, which may refuse.
ZELM_MODULE(harm)
{
    for (const char* const name : {"left", "left as well"})
        creator.create(name, Tolmen::Intercube());
#ifdef REFUSES
    return false;
#else
    return true;
#endif
}
