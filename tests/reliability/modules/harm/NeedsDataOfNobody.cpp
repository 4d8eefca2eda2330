#include "Harm.h"

extern "C" int dataOfNobody;

ZELM_MODULE(harm)
{
    return dataOfNobody == 1;
}
