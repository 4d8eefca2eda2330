#include <quorl/foundation/VGlobals.h>

#include <quorl/modules/VModule.h> // completes the record of a module
#include <quorl/values/ValuePool.h>
#include <quorl/values/ValuePoolCreator.h>

namespace Quorl
{

VGlobals::VGlobals() : modules(new ModuleTable) {}

/// The tables end before the registry does, and so would the modules' code before their objects.
VGlobals::~VGlobals()
{
    VModule::keepAllLoaded();
}

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
