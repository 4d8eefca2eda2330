#include <quorl/kit/Module.h>
#include <quorl/kit/TypedSlot.h>
#include <quorl/kit/VCreator.h>

/// Makes an object before the module's routine has a say.
namespace
{

class Early final : public Quorl::VObject
{
public:
    using VObject::VObject;
    bool update(Quorl::VRequest& request, double /*precision*/) override
    {
        answer.set(request, 3);
        return true;
    }
    const Quorl::OutputSlot<int> answer{*this, "answer"};
};

Quorl::VCreator<Early> creator("Early/Early", {.provides = {typeid(int)}});
const bool isMade = static_cast<bool>(creator.create("early", {})); // the registry owns it

} // namespace

ZELM_MODULE(early)
{
    return isMade;
}
