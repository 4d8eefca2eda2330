#include "Harm.h"

#include <quorl/modules/LeaveItems.h>
#include <quorl/modules/VModules.h>

/// Unloads its own code while that runs: when an object is made, and when it is updated.
class Vanishing final : public Quorl::VObject
{
public:
    Vanishing(const std::string& objectName, int objectPriority,
              const Quorl::RefPtr<Quorl::VCreationPreferences>& wanted)
        : VObject(objectName, objectPriority, wanted)
    {
#ifdef WHEN_MADE
        vanish();
#endif
    }

    bool update(Quorl::VRequest& /*request*/, double /*precision*/) override
    {
        vanish();
        return true;
    }

private:
    static void vanish()
    {
        Quorl::LeaveItems remover;
        std::printf("unloaded: %d\n", Quorl::UnloadVModule(kOwnPath, remover) ? 1 : 0);
    }
};

static Quorl::VCreator<Vanishing> creator("Harm/A");

ZELM_MODULE(harm)
{
    return true;
}
