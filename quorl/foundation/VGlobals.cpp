#include <quorl/foundation/VGlobals.h>

#include <quorl/foundation/AtCleanUp.h>
#include <quorl/foundation/DeadEntries.h>
#include <quorl/modules/VModule.h> // completes the record of a module
#include <quorl/values/ValuePool.h>
#include <quorl/values/ValuePoolCreator.h>

namespace Quorl
{
namespace
{

constinit Tolmen::DeadEntries theDeadQuitters; // of the only table there is

} // namespace

VGlobals::VGlobals() : modules(new ModuleTable) {}

VGlobals::~VGlobals() = default;

/// The tables are emptied before the registry is, and so would the modules' code leave before their
/// objects.
void VGlobals::cleanUp()
{
    VModule::keepAllLoaded();
    Tolmen::emptySteadily(*modules);
    Tolmen::emptySteadily(poolCreators);
}

VGlobals& VGlobals::theGlobals()
{
    static auto& globals = *new VGlobals;
    static const Tolmen::AtCleanUp end([] { globals.cleanUp(); });
    return globals;
}

void VGlobals::quit() const
{
    const Tolmen::DeadEntries::Walk walk(theDeadQuitters);
    for (const WeakPtr<ApplicationQuitter>& quitter : quitters)
        if (quitter) quitter->quit(); // not owned meanwhile: that would end one that nobody owns
}

void VGlobals::addQuitter(const WeakPtr<ApplicationQuitter>& quitter)
{
    theDeadQuitters.takeOut(quitters, [](const auto& entry) { return !entry; });
    quitters.insert(quitter);
}

} // namespace Quorl
