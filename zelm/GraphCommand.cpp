#include "Commands.h"
#include "DotText.h"
#include "Drawing.h"
#include "Evaluation.h"
#include "Failure.h"
#include "HostNetwork.h"
#include "Interruption.h"
#include "Output.h"

#include <quorl/values/ValuePool.h>
#include <zelm/network/Replacement.h>
#include <zelm/network/WholeFile.h>

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>

namespace Zelm
{
namespace
{

namespace fs = std::filesystem;

struct GraphOrder
{
    std::string file;
    std::string picture;
    bool withAges = false;
    bool isRun = false;
};

/// In dots an inch: enough for print; for SVG the points that Graphviz counts in.
std::string resolutionOf(const std::string& format)
{
    return format == "png" ? "-Gdpi=192" : "-Gdpi=72";
}

/// Runs Graphviz to its end. \return whether it worked.
bool runDot(const std::string& format, const std::string& from, const std::string& to)
{
    std::array<std::string, 6> words{"dot", "-T" + format, resolutionOf(format), from, "-o", to};
    std::array<char*, 7> arguments{};
    for (std::size_t at = 0; at < words.size(); ++at) arguments[at] = words[at].data();
    pid_t child = 0;
    if (::posix_spawnp(&child, "dot", nullptr, nullptr, arguments.data(), environ) != 0)
        throw std::runtime_error("dot cannot be started; it is in the package graphviz");
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

/// The picture is whole, or as it was.
void drawFile(const std::string& dot, const std::string& format, const std::string& picture)
{
    Replacement replacement(picture);
    const std::string source = replacement.path() + ".dot";
    writeWholeFile(source, dot);
    if (!runDot(format, source, replacement.path()))
        throw std::runtime_error(picture + ": this cannot be drawn");
    replacement.takePlace();
}

std::vector<Outcome> evaluated(const HostNetwork& network)
{
    const Evaluation evaluation(network.handle());
    std::vector<Outcome> outcomes;
    for (const RefPtr<Quorl::ValuePool>& context : (*network).contexts)
        for (const RequestEntry& request : network.requests())
            if (HostNetwork::isFor(request, context->name))
                outcomes.push_back(evaluation.request((*network).object(request.object), context,
                                                      request.precision));
    return outcomes;
}

std::string formatOf(const std::string& picture)
{
    std::string suffix = fs::path(picture).extension().string();
    for (const char* known : {".svg", ".png", ".dot", ".json"})
        if (suffix == known) return suffix.substr(1);
    throw UsageError("--output " + picture + ": .svg, .png, .dot or .json is expected");
}

void draw(const GraphOrder& order, const Settings& settings)
{
    const std::string format = formatOf(order.picture);
    const HostNetwork network(order.file, settings);
    const std::vector<Outcome> outcomes = order.isRun ? evaluated(network) : std::vector<Outcome>();
    if (Interruption::isWanted()) throw std::runtime_error("interrupted; nothing is drawn");
    const Drawing drawing = drawingOf(*network, outcomes);
    if (format == "json")
        writeWholeFile(order.picture, drawing.json().dump(2) + "\n");
    else if (format == "dot")
        writeWholeFile(order.picture, dotTextOf(drawing, order.withAges));
    else
        drawFile(dotTextOf(drawing, order.withAges), format, order.picture);
    if (settings.asJson)
        Output::printJson(drawing.json());
    else
        Output::printLine(order.picture);
    for (const Outcome& outcome : outcomes)
        for (const std::string& failure : failuresOf(outcome)) Output::complain(failure);
    if (std::ranges::any_of(outcomes, &Outcome::hasFailed)) throw CLI::RuntimeError(Failed);
}

} // namespace

void addGraphCommand(CLI::App& program, const Settings& settings)
{
    CLI::App* const command = program.add_subcommand(
        "graph", "Draws the network of a file: objects, connections, and a band of states.");
    const auto order = std::make_shared<GraphOrder>();
    command->fallthrough();
    command->add_option("FILE", order->file, "a network file")->required();
    command->add_option("-o,--output", order->picture, "the picture: .svg, .png, .dot or .json")
        ->type_name("FILE")
        ->required();
    command->add_flag("--ages", order->withAges, "tell the ages of values, in each context");
    command->add_flag("--run", order->isRun, "evaluate the network first");
    command->footer("\nExample:\n  zelm graph geoid.json --run -o geoid.svg");
    command->callback([order, &settings] { draw(*order, settings); });
}

} // namespace Zelm
