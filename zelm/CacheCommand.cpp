#include "CacheFile.h"
#include "Commands.h"
#include "Failure.h"
#include "Modules.h"
#include "Output.h"

namespace Zelm
{
namespace
{

void tell(const Settings& settings, const CacheFile& cache, const std::string& state,
          const std::string& words)
{
    if (settings.asJson)
        Output::printJson({{"cache", cache.path()}, {"state", state}});
    else
        Output::printLine(cache.path() + ": " + words);
}

/// Nothing of this program may be in the registry, as nothing that is no module's can be told.
void write(const Settings& settings)
{
    Modules modules(settings);
    const CacheFile cache(settings);
    modules.open();
    modules.complain();
    cache.write(modules);
    tell(settings, cache, "written",
         "written, of " + std::to_string(modules.files().size()) + " modules");
}

const char* nameOf(CacheFile::Verdict verdict)
{
    switch (verdict)
    {
        case CacheFile::Verdict::Absent: return "absent";
        case CacheFile::Verdict::Foreign: return "foreign";
        case CacheFile::Verdict::Torn: return "torn";
        case CacheFile::Verdict::Stale: return "stale";
        case CacheFile::Verdict::Other: return "other";
        case CacheFile::Verdict::Good: break;
    }
    return "good";
}

void check(const Settings& settings)
{
    const CacheFile cache(settings);
    const CacheFile::Verdict verdict = cache.check(Modules(settings));
    tell(settings, cache, nameOf(verdict), CacheFile::words(verdict));
    if (verdict != CacheFile::Verdict::Good) throw CLI::RuntimeError(Failed);
}

void drop(const Settings& settings)
{
    const CacheFile cache(settings);
    const bool wasThere = cache.drop();
    tell(settings, cache, wasThere ? "dropped" : "absent", wasThere ? "dropped" : "there is none");
}

} // namespace

void addCacheCommand(CLI::App& program, const Settings& settings)
{
    CLI::App* const command = program.add_subcommand(
        "cache", "Remembers what is in the modules, so that later starts load those alone that "
                 "they need.");
    command->fallthrough();
    command->require_subcommand(1);
    const auto add = [&](const char* name, const char* help, void (*act)(const Settings&)) {
        CLI::App* const step = command->add_subcommand(name, help);
        step->fallthrough();
        step->callback([act, &settings] { act(settings); });
    };
    add("write", "Loads all modules, and writes the cache.", &write);
    add("check", "Tells whether there is a cache that can be used; ends with 1 if not.", &check);
    add("drop", "Removes the cache.", &drop);
    command->footer("\nExample:\n  zelm cache write");
}

} // namespace Zelm
