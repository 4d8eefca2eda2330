#include "Harm.h"

#include <cstdlib>

#ifdef WHEN_LOADED
const bool hasLeft = [] {
    std::exit(3);
    return true;
}();
#endif

ZELM_MODULE(harm)
{
    std::exit(3);
}
