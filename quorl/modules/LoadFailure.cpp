#include <quorl/modules/LoadFailure.h>

#include <quorl/modules/VModule.h>
#include <quorl/modules/VModules.h>
#include <quorl/platform/Question.h>

#include <cstdio>
#include <cstdlib>

namespace Quorl
{
namespace
{

int askOnTerminal(const string& caption, const string& text)
{
    return Tolmen::Platform::askOnTerminal(caption, text);
}

constinit VModules::ErrorDialog theErrorDialog = &askOnTerminal;
constinit bool ignoreAll = false;

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

} // namespace

void reportLoadFailure(const VModule& module)
{
    appendToLog(module.errorText);
    std::printf("Loading Library [%s] failed ;-(, see ZelmError.log for details.\n",
                module.path.c_str());
    ask(module);
}

VModules::ErrorDialog VModules::setErrorDialog(ErrorDialog dialog)
{
    const ErrorDialog before = theErrorDialog;
    theErrorDialog = dialog ? dialog : &askOnTerminal;
    return before;
}

} // namespace Quorl
