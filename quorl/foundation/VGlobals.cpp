#include <quorl/foundation/VGlobals.h>

#include <quorl/values/ValuePool.h>
#include <quorl/values/ValuePoolCreator.h>

namespace Quorl
{

/// What is known of a module file.
struct VGlobals::ModuleInfo
{
};

VGlobals::VGlobals() : modules(new ModuleTable) {}

VGlobals::~VGlobals() = default;

VGlobals& VGlobals::theGlobals()
{
    static VGlobals globals;
    return globals;
}

void VGlobals::quit() const
{
    for (const WeakPtr<ApplicationQuitter>& quitter : quitters)
        if (quitter) quitter->quit(); // not owned meanwhile: that would end one that nobody owns
}

} // namespace Quorl
