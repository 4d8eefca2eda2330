#include "Commands.h"
#include "Failure.h"
#include "Interruption.h"
#include "Output.h"

#include <quorl/objects/VObject.h>

#include <CLI/CLI.hpp>

#include <exception>
#include <string>
#include <vector>

namespace
{

using Zelm::Settings;

constexpr const char* kExamples = R"(
Examples:
  zelm run examples/networks/geoid.json
  zelm run geoid.json --context india --set hillshade.azimuth=90
  zelm graph geoid.json --run -o geoid.svg
  zelm why geoid.json picture --set hillshade.azimuth=90
  zelm trace geoid.json -o trace.json
  zelm inspect Grid/Hillshade
  zelm cache write
  zelm new-plugin summit

Modules are looked for in the folders of --modules, then in those of ZELM_PLUGIN_PATH,
which colons separate, then where this program is installed.
Exit codes: 0 done, 1 the network or its evaluation failed, 2 wrong usage.)";

void addSettings(CLI::App& program, Settings& settings)
{
    program.add_option("-m,--modules", settings.folders, "a folder of modules; may be repeated")
        ->type_name("DIR")
        ->expected(1)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
    program
        .add_option("--cache", settings.cache,
                    "the file of the cache; otherwise ZELM_CACHE, or a file in ~/.cache/zelm")
        ->type_name("FILE");
    program
        .add_option("-v,--verbose", settings.verbosity,
                    "how much the walks tell of themselves on standard error: 1 requests and "
                    "updates, 21 everything")
        ->type_name("N")
        ->check(CLI::Range(0, 100));
    program.add_flag("--json", settings.asJson, "print facts as JSON");
}

std::string firstLine(const std::string& text)
{
    return text.substr(0, text.find('\n'));
}

/// The parser does not say which word it took for a command.
std::string wordsOf(const CLI::App& program, const CLI::ParseError& error)
{
    const std::string words = firstLine(error.what());
    if (!words.starts_with("A subcommand is required")) return words;
    const std::vector<std::string> rest = program.remaining(true);
    if (rest.empty()) return "a command is required";
    return rest.front() + ": there is no such " +
           (rest.front().starts_with('-') ? "option" : "command");
}

int complain(const std::string& reason, int status)
{
    Zelm::Output::complain(reason);
    return status;
}

int runProgram(CLI::App& program, int argc, char** argv)
{
    try
    {
        program.parse(argc, argv); // runs the command, too
        Zelm::Output::finish();
        return Zelm::Done;
    }
    catch (const CLI::CallForHelp&)
    {
        Zelm::Output::print(program.help());
        Zelm::Output::finish();
        return Zelm::Done;
    }
    catch (const CLI::RuntimeError& error) // has said why
    {
        Zelm::Output::finish();
        return error.get_exit_code();
    }
    catch (const CLI::ParseError& error)
    {
        return complain(wordsOf(program, error) + "; see zelm --help", Zelm::WrongUsage);
    }
    catch (const Zelm::UsageError& error)
    {
        return complain(error.what(), Zelm::WrongUsage);
    }
}

} // namespace

int main(int argc, char** argv)
try
{
    Zelm::Output::moveDiagnosticsAside();
    Zelm::Interruption::listen();
    Settings settings;
    CLI::App program("Runs, draws, inspects and explains networks of objects.", "zelm");
    program.require_subcommand(1);
    program.footer(kExamples);
    addSettings(program, settings);
    program.parse_complete_callback(
        [&settings] { Quorl::VObject::VERBOSE_REQUEST = settings.verbosity; });
    Zelm::addRunCommand(program, settings);
    Zelm::addGraphCommand(program, settings);
    Zelm::addWhyCommand(program, settings);
    Zelm::addTraceCommand(program, settings);
    Zelm::addInspectCommand(program, settings);
    Zelm::addCacheCommand(program, settings);
    Zelm::addNewPluginCommand(program, settings);
    return runProgram(program, argc, argv);
}
catch (const std::exception& error)
{
    Zelm::Output::complain(error.what());
    return Zelm::Failed;
}
