#include <quorl/kit/Module.h>
#include <quorl/kit/VCreator.h>
#include <quorl/modules/VModules.h>

/// Loads another module ahead of its own creator.
namespace
{

class Leading final : public Quorl::VObject
{
public:
    using VObject::VObject;
};

const bool isOtherLoaded = Quorl::LoadVModule("versioned.zelm");
Quorl::VCreator<Leading> creator("Leading/Leading");

} // namespace

ZELM_MODULE(leading)
{
    return isOtherLoaded;
}
