#include "Harm.h"

#include <string>

/// Its code leaves together with the module.
struct OwnFailure
{
    virtual ~OwnFailure() { std::printf("the failure ends\n"); }
    std::string text = "a text that is too long to stand in the object itself";
};

ZELM_MODULE(harm)
{
    throw OwnFailure();
}
