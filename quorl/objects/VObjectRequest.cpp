#include <quorl/objects/OwnOperations.h>
#include <quorl/objects/RequestPlans.h>
#include <quorl/objects/VObject.h>
#include <quorl/objects/Walk.h>
#include <quorl/slots/VParameter.h>
#include <quorl/slots/VSlot.h>

#include <mutex>
#include <source_location>

namespace Quorl
{

constinit std::int32_t VObject::VERBOSE_REQUEST = 0;

bool VObject::request(VRequest& request, double precision, const WeakVObjectPtr& /*caller*/,
                      const WeakVObjectPtr& origin)
{
    RequestPlans plans(*this);
    if (plans.repeat(request)) return false;
    return Walk(request, origin, plans, std::source_location::current()).from(*this, precision);
}

bool VObject::takesPart(const RefPtr<VSlot>& input) const
{
    return input->Parameter && !checkIfIgnoredInputClass(input->InputClass) && !ignoreInput(input);
}

bool VObject::init_request(VRequest& request, double precision)
{
    const WeakVObjectPtr myself(this);
    const RefPtr<VObject> held = Tolmen::heldIfOwned(myself); // its update may drop it
    return this->request(request, precision, myself, myself);
}

bool VObject::update(VRequest& /*request*/, double /*precision*/)
{
    return true;
}

bool VObject::must_update(const VRequest& /*request*/, double /*precision*/) const
{
    return false;
}

bool VObject::unsychronized_update(VRequest& /*request*/, double /*precision*/)
{
    return true;
}

bool VObject::perform_update(VRequest& request, double precision)
{
    if (OwnOperations::hasUnsychronizedUpdate(*this) && !unsychronized_update(request, precision))
        return false;
    const std::lock_guard<const Tolmen::mutex> lock(*this);
    for (const UpdateFunction function : UpdateFunctions)
        if (!function(this, request, precision)) return false;
    return update(request, precision);
}

void VObject::insertUpdateFunction(UpdateFunction function)
{
    UpdateFunctions.insert(function);
}

void VObject::enableRequestProcessing()
{
    RequestProcessing = true;
}

void VObject::disableRequestProcessing()
{
    RequestProcessing = false;
}

} // namespace Quorl
