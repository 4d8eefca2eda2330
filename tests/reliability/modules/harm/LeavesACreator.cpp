#include "Harm.h"

/// The registry alone owns the creator, which does not end with the module by itself.
[[maybe_unused]] static const auto* const creator =
    new Quorl::VCreator<Harmless>("Harm/A", {.isPinned = false});

ZELM_MODULE(harm)
{
    return true;
}
