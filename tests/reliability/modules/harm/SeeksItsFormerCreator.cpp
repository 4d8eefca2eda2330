#include "Harm.h"

#include <quorl/kit/Network.h>
#include <quorl/registry/VCreatorBaseInfo.h>
#include <quorl/registry/VCreatorMap.h>
#include <quorl/registry/VCreatorMapTypes.h>

static Quorl::VCreator<Harmless> creator("Harm/A");

ZELM_MODULE(harm)
{
    // As the cache has it, which was written when the module had another creator.
    auto& former =
        Quorl::VCreators(typeid(Quorl::VInputCreatorBase))->entered("Harm/Former").second;
    former = new Quorl::VCreatorBaseInfo;
    former->ModuleName = creator.getLoadModule();
    std::printf("%s\n", Quorl::findCreator("Harm/Former") ? "found" : "not found");
    return true;
}
