#include <quorl/foundation/VGlobals.h>
#include <quorl/modules/ApiWord.h>
#include <quorl/modules/LeaveItems.h>
#include <quorl/modules/LoadFailure.h>
#include <quorl/modules/LoadScope.h>
#include <quorl/modules/VInitialization.h>
#include <quorl/modules/VModule.h>
#include <quorl/modules/VModuleHold.h>
#include <quorl/modules/VModules.h>
#include <quorl/platform/Directory.h>
#include <quorl/platform/SharedLibrary.h>

#include <cstdio>
#include <cstdlib>

namespace Quorl
{
namespace
{

/// The file name behind the last separator, up to its last dot.
string stemOf(const string& path)
{
    const string name = path.substr(path.rfind(Tolmen::Platform::kPathSeparator) + 1);
    return name.substr(0, name.rfind('.'));
}

bool isStrict()
{
    static const bool isSet = std::getenv("ZELM_STRICT_LOADING") != nullptr;
    return isSet;
}

/// Lets go of a module that is not to be used, and of its creators. Those that are static end with
/// it; any others would be left behind without their code. One that was loaded before stays, and so
/// do they.
void withdraw(RefPtr<VModule>& module)
{
    if (VModules::find(module->path)) return;
    LeaveItems remover;
    VManagedObject::UnloadVModule(module->path, remover);
    const WeakPtr<VModule> left = module;
    module = RefPtr<VModule>();
    if (left) left->leaveBehind(); // an object that its code has made has it
}

/// As `withdraw`, in the midst of an exception. If that does not succeed either, the module stays
/// for good, as what is left of it is code.
void abandon(RefPtr<VModule>& module)
{
    try
    {
        withdraw(module);
    }
    catch (...)
    {
        WeakPtr<VModule>(module).ref();
    }
}

/// \return whether the module may be used all the same.
bool missInitRoutine(RefPtr<VModule>& module, const string& routine)
{
    if (!isStrict())
    {
        std::printf("WARNING: (Windows) Module has NO init routine %s...\n", routine.c_str());
        return true;
    }
    const string path = module->path;
    std::printf("ERROR: (win) Module [%s] has NO init routine %s...\n", path.c_str(),
                routine.c_str());
    withdraw(module);
    Tolmen::Platform::renameFile(path, path + "-noinit"); // a name that no scan finds
    return false;
}

/// \return null also for something of that name that is no function.
InitRoutine initRoutineOf(const VModule& module, const string& name)
{
    void* const routine = module.getFunction(name);
    return Tolmen::Platform::isCode(routine) ? reinterpret_cast<InitRoutine>(routine) : nullptr;
}

/// An exception counts as a refusal.
bool runInitRoutine(const VModule& module, InitRoutine routine, const string& stem)
{
    const LoadScope scope(module, LoadScope::Phase::InitRoutine);
    VInitialization initialization(stem.c_str());
    try
    {
        return routine(&initialization) && initialization.acceptable();
    }
    catch (...)
    {
        return false;
    }
}

/// \return whether the module is to be used.
bool initialise(RefPtr<VModule>& module)
{
    const string stem = stemOf(module->path);
    const string name = ZELM_INIT_PREFIX + stem;
    const InitRoutine routine = initRoutineOf(*module, name);
    if (!routine) return missInitRoutine(module, name);
    if (runInitRoutine(*module, routine, stem)) return true;
    withdraw(module);
    return false;
}

} // namespace

bool LoadVModule(const string& path)
{
    VModuleHold::letGo();
    // Made ahead: a module that is ready is not to fail any more.
    auto& modules = *VGlobals::theGlobals().modules;
    VGlobals::ModuleTable entry;
    entry[path];
    RefPtr<VModule> module(new VModule(path));
    if (!module->isValid())
    {
        reportLoadFailure(*module);
        return false;
    }
    try
    {
        if (!initialise(module)) return false;
    }
    catch (...)
    {
        if (module) abandon(module);
        throw;
    }
    modules.insert(entry.extract(entry.begin())).position->second.module = module;
    return true;
}

} // namespace Quorl
