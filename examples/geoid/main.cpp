#include "Facts.h"
#include "GeoidError.h"
#include "Modules.h"
#include "Network.h"

#include <quorl/objects/VObject.h>

#include <CLI/CLI.hpp>

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

namespace
{

using Geoid::Network;
using Geoid::Run;

constexpr int kWrongUse = 2;

std::filesystem::path besideTheProgram(const std::filesystem::path& place)
{
    const auto program = std::filesystem::read_symlink("/proc/self/exe");
    return (program.parent_path() / place).lexically_normal();
}

struct Options
{
    std::filesystem::path input = "/usr/share/proj/egm96_15.gtx";
    std::filesystem::path output = ".";
    std::filesystem::path modules = besideTheProgram("../../modules");
    std::filesystem::path cache;
    int width = 1440; // pixels of the map of the world
    int verbosity = 0;
};

/// The whole Earth, and the low south of India, where the geoid is 107 m below the ellipsoid.
std::vector<Geoid::View> views(const Options& options)
{
    Geoid::View world;
    world.name = "world";
    world.title = "Geoid of the Earth: height above the ellipsoid (EGM96)";
    world.width = options.width;
    world.height = options.width / 2;
    world.exaggeration = 20000.0;
    world.low = -110.0;
    world.high = 90.0;
    world.interval = 10.0;
    world.picture = options.output / "world.png";

    Geoid::View india;
    india.name = "india";
    india.title = "Geoid south of India: height above the ellipsoid (EGM96)";
    india.west = 50.0;
    india.east = 100.0;
    india.south = -20.0;
    india.north = 30.0;
    india.width = india.height = options.width * 5 / 8;
    india.exaggeration = 18000.0;
    india.low = -110.0;
    india.high = 0.0;
    india.interval = 5.0;
    india.picture = options.output / "india.png";
    return {world, india};
}

/// Both pictures or none: what can be known to fail is found out before anything is written.
void checkOutput(const std::filesystem::path& folder, const std::vector<Geoid::View>& wanted)
{
    std::error_code failure;
    if (!std::filesystem::is_directory(folder, failure))
        throw Geoid::GeoidError(folder.string() + " is not a folder");
    if (::access(folder.c_str(), W_OK | X_OK) != 0)
        throw Geoid::GeoidError(folder.string() + " cannot be written to");
    for (const Geoid::View& view : wanted)
    {
        const auto status = std::filesystem::status(view.picture, failure);
        if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status))
            throw Geoid::GeoidError(view.picture.string() + " is there and is not a file");
    }
}

std::vector<Run> requestAloud(Network& network, const std::string& context)
{
    const std::vector<Run> runs = network.request(context);
    std::printf("  %s:%s\n", context.c_str(), runs.empty() ? " (nothing to do)" : "");
    int place = 0;
    for (const Run& run : runs)
        std::printf("    %d  %-10s age %lld\n", ++place, run.object.c_str(), run.age);
    return runs;
}

bool demonstrate(Network& network)
{
    Geoid::Facts facts(network);

    std::puts("1. The first request of each context");
    facts.everythingRanUpstreamFirst("world", requestAloud(network, "world"));
    facts.everythingRanUpstreamFirst("india", requestAloud(network, "india"));

    std::puts("2. The same again");
    facts.nothingRan("world", requestAloud(network, "world"));
    facts.nothingRan("india", requestAloud(network, "india"));

    std::puts("3. The light of the world is turned, from the northwest to the northeast");
    network.setIn("world", "hillshade", "azimuth", "45");
    facts.onlyTheseRan("world", requestAloud(network, "world"), {"hillshade", "picture"});
    facts.nothingRan("india", requestAloud(network, "india"));

    std::puts("4. The smoothing of all contexts is made finer, from 0.5 to 0.35 degrees");
    network.setEverywhere("smoothing", "sigma", "0.35");
    const std::set<std::string> downstream{"smoothing", "hillshade", "colours", "contours",
                                           "picture"};
    facts.onlyTheseRan("world", requestAloud(network, "world"), downstream);
    facts.onlyTheseRan("india", requestAloud(network, "india"), downstream);

    return facts.allHold();
}

int run(const Options& options)
{
    const std::vector<Geoid::View> wanted = views(options);
    checkOutput(options.output, wanted);
    Quorl::VObject::VERBOSE_REQUEST = options.verbosity;

    const Geoid::Modules modules(options.modules, options.cache);
    Network network(modules, options.input);
    std::printf("Modules: %d files, of which %d were opened.\n", modules.files(), modules.opened());
    for (const Geoid::View& view : wanted) network.addContext(view);
    const bool allHold = demonstrate(network);
    for (const Geoid::View& view : wanted) std::printf("%s\n", view.picture.c_str());
    std::puts(allHold ? "All facts hold." : "Some facts are BROKEN.");
    return allHold ? EXIT_SUCCESS : EXIT_FAILURE;
}

int fail(const std::string& reason, int status)
{
    std::fflush(stdout);
    std::fprintf(stderr, "geoid: %s\n", reason.c_str());
    return status;
}

} // namespace

int main(int argc, char** argv)
{
    Options options;
    CLI::App app(
        "Draws the geoid, the height of the sea level over the ellipsoid, of the Earth and "
        "of the low south of India, as two contexts of one network. Prints what each "
        "request ran, with ages, and checks that nothing ran in vain.",
        "geoid");
    app.add_option("-i,--input", options.input, "the EGM96 grid, a GTX file")
        ->capture_default_str();
    app.add_option("-o,--output", options.output,
                   "the folder for world.png and india.png, which are replaced")
        ->capture_default_str();
    app.add_option("-m,--modules", options.modules, "the folder of the modules")
        ->capture_default_str();
    app.add_option("-c,--cache", options.cache,
                   "a file that tells later starts what is in the modules, so that they open those "
                   "alone that they need; written if it is not there");
    app.add_option("-w,--width", options.width, "of the map of the world, in pixels")
        ->check(CLI::Range(64, 8192))
        ->capture_default_str();
    app.add_option("-v,--verbosity", options.verbosity,
                   "how much the walks tell of themselves on standard output: 0 is nothing, 1 the "
                   "requests and updates, 21 everything")
        ->check(CLI::Range(0, 100))
        ->capture_default_str();

    try
    {
        app.parse(argc, argv);
        return run(options);
    }
    catch (const CLI::CallForHelp&)
    {
        std::fputs(app.help().c_str(), stdout);
        return EXIT_SUCCESS;
    }
    catch (const CLI::ParseError& error)
    {
        return fail(error.what(), kWrongUse);
    }
    catch (const std::exception& error)
    {
        return fail(error.what(), EXIT_FAILURE);
    }
}
