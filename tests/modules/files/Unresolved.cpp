#include <quorl/kit/Module.h>

/// Needs a symbol that nobody has.
extern "C" int symbolOfNobody();

ZELM_MODULE(unresolved)
{
    return symbolOfNobody() == 0;
}
