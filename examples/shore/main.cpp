#include "Scene.h"

#include <quorl/foundation/Timer.h>
#include <quorl/foundation/VGlobals.h>
#include <quorl/kit/HostQueue.h>
#include <quorl/modules/VModules.h>
#include <quorl/tasks/VThreadCreator.h>

#include <CLI/CLI.hpp>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>

/// A host whose network answers twice. Its main loop has two steps: what tasks want done is done,
/// and what has changed by that is requested.
namespace
{

using Shore::Scene;
using Tolmen::Timer;

constexpr int kWrongUse = 2;

struct Options
{
    std::filesystem::path modules =
        std::filesystem::read_symlink("/proc/self/exe").parent_path() / "../../modules";
    Shore::Plan plan{"/usr/share/proj/egm96_15.gtx", "shore.png"};
    double level = 0.0;
};

void requestAloud(Scene& scene, const char* what, const Timer& watch)
{
    const bool hasRun = scene.request();
    std::printf("%6.0f ms  %s%s\n", 1000.0 * watch.seconds(), what,
                hasRun ? "" : ": nothing to do");
    std::fflush(stdout);
}

/// Turns until nobody works in the background any more.
/// \return how many answers came from there.
int runMainLoop(Scene& scene, const Timer& watch)
{
    int answers = 0;
    for (bool isBusy = true; isBusy;)
    {
        isBusy = scene.isRefining(); // asked first: what it delivers at last is still taken
        if (isBusy) Quorl::HostQueue::waitFor(std::chrono::milliseconds(20));
        const int delivered = Quorl::HostQueue::drain();
        if (delivered == 0) continue;
        answers += delivered;
        requestAloud(scene, "a finer answer has arrived, and the picture is drawn anew", watch);
    }
    return answers;
}

int run(const Options& options)
{
    if (!std::filesystem::is_directory(options.modules))
        throw std::runtime_error(options.modules.string() + " is not a folder");
    Quorl::openModules(options.modules.string());
    const bool hasThreads = Quorl::VThreadCreator::getThreadManager() != nullptr;
    std::printf("Threads: %s\n", hasThreads ? "a module brings them in" : "none");

    const Timer watch;
    Scene scene(options.plan);
    scene.setLevel(options.level + 20.0);
    requestAloud(scene, "the first picture", watch);
    scene.setLevel(options.level);
    requestAloud(scene, "another level: what was under way for the first is given up", watch);
    const int answers = runMainLoop(scene, watch);
    requestAloud(scene, "the same again", watch);

    std::printf("Answers from the background: %d\n%s\n", answers, options.plan.picture.c_str());
    Quorl::VGlobals::theGlobals().quit();
    return EXIT_SUCCESS;
}

} // namespace

int main(int argc, char** argv)
{
    Options options;
    CLI::App app("Draws how far it is to a line of equal height, first roughly, then finely.");
    app.add_option("--input", options.plan.grid, "grid of heights")->capture_default_str();
    app.add_option("--output", options.plan.picture, "picture, PNG")->capture_default_str();
    app.add_option("--modules", options.modules, "folder of modules")->capture_default_str();
    app.add_option("--width", options.plan.width, "of the map, in pixels")
        ->check(CLI::Range(16, 4096))
        ->capture_default_str();
    app.add_option("--level", options.level, "height of the line, in metres")
        ->capture_default_str();
    try
    {
        app.parse(argc, argv);
    }
    catch (const CLI::ParseError& error)
    {
        const int status = app.exit(error);
        return status == 0 ? EXIT_SUCCESS : kWrongUse;
    }
    try
    {
        return run(options);
    }
    catch (const std::exception& error)
    {
        std::fflush(stdout);
        std::fprintf(stderr, "shore: %s\n", error.what());
        return EXIT_FAILURE;
    }
}
