#include "network/Step.h"

namespace Geoid
{

Step::Step(const std::string& stepName, Journal& journal)
    : VObject(stepName, 0, {}), journal_(journal)
{
    enableRequestProcessing();
}

bool Step::update(Quorl::VRequest& request, double /*precision*/)
{
    compute(request);
    journal_.note(this);
    return true;
}

} // namespace Geoid
