#include "Harm.h"

/// The registry alone owns the creator, which does not end by itself when the module does. The
/// routine may refuse.
[[maybe_unused]] static const auto* const creator =
    new Quorl::VCreator<Harmless>("Harm/A", {.isPinned = false});

ZELM_MODULE(harm)
{
#ifdef REFUSES
    return false;
#else
    return true;
#endif
}
