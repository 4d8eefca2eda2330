#include "Harm.h"

#include <cstdlib>

struct Ending
{
    ~Ending() { std::exit(3); }
};
static const Ending ending;

static Quorl::VCreator<Harmless> creator("Harm/A");

ZELM_MODULE(harm)
{
    return true;
}
