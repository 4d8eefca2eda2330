#include "Facts.h"

#include <cstdio>

namespace Geoid
{
namespace
{

std::set<std::string> namesOf(const std::vector<Run>& runs)
{
    std::set<std::string> names;
    for (const Run& run : runs) names.insert(run.object);
    return names;
}

bool eachOnce(const std::vector<Run>& runs)
{
    return namesOf(runs).size() == runs.size();
}

} // namespace

bool Facts::isUpstreamFirst(const std::vector<Run>& runs) const
{
    const std::set<std::string> all = namesOf(runs);
    std::set<std::string> done;
    for (const Run& run : runs)
    {
        for (const std::string& source : network_.sourcesOf(run.object))
            if (all.contains(source) && !done.contains(source)) return false;
        done.insert(run.object);
    }
    return true;
}

void Facts::everythingRanUpstreamFirst(const std::string& context, const std::vector<Run>& runs)
{
    const std::vector<std::string> objects = network_.objects();
    const std::set<std::string> all(objects.begin(), objects.end());
    say(eachOnce(runs) && namesOf(runs) == all && isUpstreamFirst(runs), context,
        "everything ran, upstream first");
}

void Facts::onlyTheseRan(const std::string& context, const std::vector<Run>& runs,
                         const std::set<std::string>& expected)
{
    say(eachOnce(runs) && namesOf(runs) == expected && isUpstreamFirst(runs), context,
        "only what depends on it ran");
}

void Facts::nothingRan(const std::string& context, const std::vector<Run>& runs)
{
    say(runs.empty(), context, "nothing ran");
}

void Facts::say(bool holds, const std::string& context, const std::string& fact)
{
    std::printf("  %s %s: %s\n", holds ? "holds " : "BROKEN", context.c_str(), fact.c_str());
    if (!holds) ++failures_;
}

} // namespace Geoid
