#include "Harm.h"

#include <stdexcept>

static Quorl::VCreator<Harmless> creator("Harm/A");

ZELM_MODULE(harm)
{
    throw std::runtime_error("no");
}
