#include "Harm.h"

#include <quorl/registry/VAcceptInfo.h>

#include <stdexcept>

class Creator final : public Quorl::VCreatorBase
{
public:
    Creator() : VCreatorBase("Harm/A", 0, {}, true, nullptr) {}
    Quorl::RefPtr<Quorl::VObject> create(const std::string& /*name*/,
                                         const Tolmen::Intercube& /*context*/) override
    {
#ifdef THROWS
        throw std::runtime_error("not today");
#else
        return {};
#endif
    }
    Quorl::VAcceptInfoList accept(const Quorl::RefPtr<Quorl::VObject>& /*parent*/) override
    {
        return {};
    }
};
static Creator creator;

ZELM_MODULE(harm)
{
    return true;
}
