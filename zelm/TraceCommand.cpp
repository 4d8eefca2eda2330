#include "Choice.h"
#include "Commands.h"
#include "Failure.h"
#include "Interruption.h"
#include "Output.h"
#include "Trace.h"

#include <quorl/objects/VObject.h>
#include <quorl/values/ValuePool.h>
#include <zelm/network/WholeFile.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace Zelm
{
namespace
{

struct TraceOrder
{
    std::string file;
    std::string trace;
    Choice choice;
};

/// \return what failed, in one line each.
std::vector<std::string> fill(Trace& trace, const TraceOrder& order, const HostNetwork& network)
{
    std::vector<std::string> failures;
    const auto contexts = order.choice.contextsOf(*network);
    const auto requests = order.choice.requestsOf(network);
    order.choice.setInputs(*network, contexts);
    for (const RefPtr<Quorl::ValuePool>& context : contexts)
        for (const RequestEntry& request : requests)
        {
            if (!HostNetwork::isFor(request, context->name)) continue;
            const Account account =
                trace.request((*network).object(request.object), context, request.precision);
            if (Interruption::isWanted()) throw std::runtime_error(context->name + ": interrupted");
            if (!account.isWhole)
                throw std::runtime_error(context->name + ": there is too much to be traced");
            for (const std::string& failure : failuresOf(account))
                failures.push_back(context->name + ": " + failure);
        }
    return failures;
}

/// On standard output the trace stands alone. To open that by its name would be to write on
/// standard error, as all do by now who print by themselves.
void write(const Trace& trace, const TraceOrder& order, const Settings& settings)
{
    const std::string text =
        trace.json().dump(1, ' ', false, Json::error_handler_t::replace) + "\n";
    if (order.trace == "/dev/stdout") return Output::print(text);
    writeWholeFile(order.trace, text);
    if (settings.asJson)
        Output::printJson({{"trace", order.trace}, {"events", trace.size()}});
    else
        Output::printLine(order.trace);
}

void makeTrace(const TraceOrder& order, const Settings& settings)
{
    const HostNetwork network(order.file, settings);
    Trace trace;
    const std::vector<std::string> failures = fill(trace, order, network);
    write(trace, order, settings);
    for (const std::string& failure : failures) Output::complain(failure);
    if (!failures.empty()) throw CLI::RuntimeError(Failed);
}

} // namespace

void addTraceCommand(CLI::App& program, const Settings& settings)
{
    CLI::App* const command = program.add_subcommand(
        "trace", "Evaluates the network of a file, and writes when each object was requested.");
    const auto order = std::make_shared<TraceOrder>();
    command->fallthrough();
    command->add_option("FILE", order->file, "a network file")->required();
    command->add_option("-o,--output", order->trace, "the trace, in the Trace Event Format")
        ->type_name("FILE")
        ->required();
    order->choice.addTo(*command);
    command->footer("\nViewers of the format show it: chrome://tracing, ui.perfetto.dev, "
                    "speedscope.\n\nExample:\n  zelm trace geoid.json -o trace.json");
    command->callback([order, &settings] { makeTrace(*order, settings); });
}

} // namespace Zelm
