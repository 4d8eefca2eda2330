#include "Harm.h"

#include <cstdlib>

ZELM_MODULE(harm)
{
    return std::atexit([] { std::printf("called at the end\n"); }) == 0;
}
