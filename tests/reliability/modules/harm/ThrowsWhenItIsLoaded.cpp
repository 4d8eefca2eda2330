#include "Harm.h"

#include <stdexcept>

static const int number = []() -> int { throw std::runtime_error("static"); }();

ZELM_MODULE(harm)
{
    return number == 0;
}
