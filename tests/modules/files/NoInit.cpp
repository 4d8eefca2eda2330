#include <quorl/kit/Module.h>
#include <quorl/kit/VCreator.h>

namespace
{

class Uninitialised final : public Quorl::VObject
{
public:
    using VObject::VObject;
};

Quorl::VCreator<Uninitialised> uninitialised("NoInit/A");

} // namespace

ZELM_PLUGIN_STRINGS(ZELM_MODULE_DIRECTORY);
