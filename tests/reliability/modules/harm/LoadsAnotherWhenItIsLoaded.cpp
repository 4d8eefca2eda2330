#include "Harm.h"

#include <quorl/modules/VModules.h>

static Quorl::VCreator<Harmless> before("Harm/Before");
static const bool isLoaded = Quorl::LoadVModule("./last.zelm");
static Quorl::VCreator<Harmless> behind("Harm/Behind");

ZELM_MODULE(harm)
{
    std::printf("%s, %s\n", before.getLoadModule().c_str(), behind.getLoadModule().c_str());
    return isLoaded;
}
