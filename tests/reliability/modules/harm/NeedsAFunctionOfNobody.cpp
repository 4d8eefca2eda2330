#include "Harm.h"

extern "C" int functionOfNobody();

ZELM_MODULE(harm)
{
    return functionOfNobody() == 1;
}
