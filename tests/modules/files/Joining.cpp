#include <quorl/kit/Module.h>
#include <quorl/kit/VCreator.h>
#include <quorl/objects/VObject.h>

/// Its objects show parameters of another object from the beginning.
namespace
{

class Joining final : public Quorl::VObject
{
public:
    Joining(const std::string& wantedName, int givenPriority,
            const Quorl::RefPtr<Quorl::VCreationPreferences>& wanted)
        : VObject(wantedName, givenPriority, wanted)
    {
        const Quorl::RefPtr<VObject> joined = find(typeid(VObject), "joined");
        for (const char* const each : {"number", "threads"})
            addParameter(each, 0, joined->getParameter(each), false);
    }
};

Quorl::VCreator<Joining> creator("Joining/Joining");

} // namespace

ZELM_MODULE(joining)
{
    return true;
}
