#include "CommandLine.h"

#include "Commands.h"

namespace Zelm
{
namespace
{

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

} // namespace

void addCommandLine(CLI::App& program, Settings& settings)
{
    program.require_subcommand(1);
    program.footer(kExamples);
    addSettings(program, settings);
    addRunCommand(program, settings);
    addGraphCommand(program, settings);
    addWhyCommand(program, settings);
    addTraceCommand(program, settings);
    addInspectCommand(program, settings);
    addCacheCommand(program, settings);
    addNewPluginCommand(program, settings);
}

} // namespace Zelm
