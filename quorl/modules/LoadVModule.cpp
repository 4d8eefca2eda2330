#include <quorl/foundation/VGlobals.h>
#include <quorl/modules/LeaveItems.h>
#include <quorl/modules/VInitialization.h>
#include <quorl/modules/VModule.h>
#include <quorl/modules/VModuleHold.h>
#include <quorl/modules/VModules.h>
#include <quorl/platform/Directory.h>
#include <quorl/platform/Question.h>

#include <cstdio>
#include <cstdlib>

namespace Quorl
{
namespace
{

using Tolmen::Platform::kPathSeparator;

constexpr const char* kInitPrefix = "ZELM_API_2017_AUG_07__";
constexpr const char* kSuffix = ".zelm";

int askOnTerminal(const string& caption, const string& text)
{
    return Tolmen::Platform::askOnTerminal(caption, text);
}

constinit VModules::ErrorDialog theErrorDialog = &askOnTerminal;
constinit bool ignoreAll = false;

// A module that cannot be loaded

void appendToLog(const string& text)
{
    std::FILE* const log = std::fopen("ZelmError.log", "at");
    if (!log) return;
    std::fputs((text + "\n").c_str(), log);
    std::fclose(log);
}

void ask(const VModule& module)
{
    if (ignoreAll) return;
    const int answer = theErrorDialog(
        "Error loading " + module.path,
        module.errorText +
            "\nPress [Abort] to quit Zelm, [Ignore All] to ignore all possible forthcoming "
            "loading errors in the future, [Ignore] to proceed loading the next Zelm plugin.");
    if (answer == Tolmen::Platform::Abort) std::exit(1);
    if (answer == Tolmen::Platform::IgnoreAll) ignoreAll = true;
}

void report(const VModule& module)
{
    appendToLog(module.errorText);
    std::printf("Loading Library [%s] failed ;-(, see ZelmError.log for details.\n",
                module.path.c_str());
    ask(module);
}

// The init routine

/// The file name behind the last separator, up to its last dot.
string stemOf(const string& path)
{
    const string name = path.substr(path.rfind(kPathSeparator) + 1);
    return name.substr(0, name.rfind('.'));
}

bool isStrict()
{
    static const bool isSet = std::getenv("ZELM_STRICT_LOADING") != nullptr;
    return isSet;
}

/// Lets go of creators of a module that is about to leave. Those that are static end with it; any
/// others would be left behind without their code. One that was loaded before stays, and so do
/// they.
void withdraw(const string& path)
{
    LeaveItems remover;
    if (!VModules::find(path)) VManagedObject::UnloadVModule(path, remover);
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
    withdraw(path);
    module = RefPtr<VModule>();
    Tolmen::Platform::renameFile(path, path + "-noinit"); // a name that no scan finds
    return false;
}

/// An exception counts as a refusal.
bool runInitRoutine(InitRoutine routine, const string& stem)
{
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
    const string name = kInitPrefix + stem;
    const auto routine = reinterpret_cast<InitRoutine>(module->getFunction(name));
    if (!routine) return missInitRoutine(module, name);
    if (runInitRoutine(routine, stem)) return true;
    withdraw(module->path);
    return false;
}

/// Counts the files of one directory, and loads those that are not known.
int openFiles(const string& directory, bool (*progress)(const char*, bool), bool countOnly)
{
    const string prefix = directory + kPathSeparator;
    const auto names = Tolmen::Platform::namesIn(prefix, kSuffix);
    for (const string& name : names)
    {
        if (countOnly) break;
        string path = prefix;
        path += name;
        if (!VModules::isLoadable(path))
        {
            std::printf(" SKIP loading of %s\n", path.c_str());
            continue;
        }
        if (progress) progress(path.c_str(), false);
        LoadVModule(path);
    }
    if (names.empty())
    {
        std::printf("\n*******\nERROR in searching modules in %s\n*******\n\n", directory.c_str());
        std::fflush(stdout);
    }
    return static_cast<int>(names.size());
}

} // namespace

bool LoadVModule(const string& path)
{
    VModuleHold::letGo();
    RefPtr<VModule> module(new VModule(path));
    if (!module->isValid())
    {
        report(*module);
        return false;
    }
    if (!initialise(module)) return false;
    (*VGlobals::theGlobals().modules)[path].module = module;
    return true;
}

int openModules(const string& directory, bool (*progress)(const char*, bool), bool countOnly,
                const RefPtr<Tolmen::StringList>& subdirectories)
{
    int count = 0;
    if (subdirectories)
        for (const string& subdirectory : *subdirectories)
            count += openModules(directory + kPathSeparator + subdirectory, progress, countOnly);
    return count + openFiles(directory, progress, countOnly);
}

VModules::ErrorDialog VModules::setErrorDialog(ErrorDialog dialog)
{
    const ErrorDialog before = theErrorDialog;
    theErrorDialog = dialog ? dialog : &askOnTerminal;
    return before;
}

} // namespace Quorl
