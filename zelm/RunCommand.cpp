#include "Choice.h"
#include "Commands.h"
#include "Evaluation.h"
#include "Failure.h"
#include "Interruption.h"
#include "Output.h"
#include "Saving.h"

#include <quorl/kit/HostQueue.h>
#include <quorl/objects/VObject.h>
#include <quorl/tasks/VScheduler.h>
#include <quorl/values/ValuePool.h>
#include <zelm/network/NetworkError.h>

#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <tuple>
#include <utility>
#include <vector>

namespace Zelm
{
namespace
{

using Quorl::ValuePool;

struct Order
{
    std::string file;
    Choice choice;
    std::vector<std::string> saves; // object=file
    int turns = 0;
    bool isWatching = false;
};

/// A network on its way through one call of the command.
class Session
{
public:
    Session(const Order& order, const HostNetwork& network)
        : order_(order), host_(network), network_(network.handle()), evaluation_(network_),
          contexts_(order.choice.contextsOf(*network_)), saves_(network_->frame.saves)
    {
        for (const std::string& words : order.saves)
        {
            const auto [object, file] = halvesOf("--save", words, "OBJECT=FILE");
            objectOf(*network_, "--save", object);
            saves_.push_back({object, file, Json::object(), {}});
        }
    }

    void setInputs() const { order_.choice.setInputs(*network_, contexts_); }
    void restoreInputs() const { order_.choice.restoreInputs(*network_, contexts_); }

    /// Requests what the order or the file says, in all contexts.
    void evaluate()
    {
        const std::vector<RequestEntry> requests = order_.choice.requestsOf(host_);
        for (const RefPtr<ValuePool>& context : contexts_)
            for (const RequestEntry& request : requests)
                if (HostNetwork::isFor(request, context->name) && !Interruption::isWanted())
                    outcomes_.push_back(evaluation_.request(network_->object(request.object),
                                                            context, request.precision));
    }

    /// Main-loop turns: what tasks and the scheduler bring is done, then requested.
    void takeTurns()
    {
        for (int turn = 0; turn < order_.turns && !Interruption::isWanted(); ++turn)
        {
            constexpr std::chrono::milliseconds kPatience(100);
            Quorl::HostQueue::waitFor(kPatience);
            Quorl::HostQueue::drain();
            Quorl::VScheduler::execute(1.0);
            evaluate();
        }
    }

    /// What Ctrl-C has kept from being requested so far makes all of this fail.
    void heedInterruption() { isInterrupted_ = Interruption::isWanted(); }

    /// Saves one after the other, up to the first that cannot be saved.
    void save()
    {
        try
        {
            for (const SaveEntry& entry : saves_)
            {
                saveObject(*network_->object(entry.object), entry.file);
                saved_.push_back(entry.file);
            }
        }
        catch (...)
        {
            saveFailure_ = wordsOfException();
        }
    }

    bool hasFailed() const
    {
        return isInterrupted_ || !saveFailure_.empty() ||
               std::ranges::any_of(outcomes_, &Outcome::hasFailed);
    }
    const std::vector<Outcome>& outcomes() const { return outcomes_; }
    const std::vector<std::string>& saved() const { return saved_; }

    void complain() const
    {
        for (const Outcome& outcome : outcomes_)
            for (const std::string& failure : failuresOf(outcome)) Output::complain(failure);
        if (isInterrupted_ && std::ranges::none_of(outcomes_, &Outcome::isCancelled))
            Output::complain("interrupted");
        if (!saveFailure_.empty()) Output::complain(saveFailure_);
    }

private:
    const Order& order_;
    const HostNetwork& host_;
    const RefPtr<LoadedNetwork> network_;
    const Evaluation evaluation_;
    const std::vector<RefPtr<ValuePool>> contexts_;
    std::vector<SaveEntry> saves_; // of the file, then of the order
    std::vector<Outcome> outcomes_;
    std::vector<std::string> saved_;
    std::string saveFailure_; // empty if there is none
    bool isInterrupted_ = false;
};

double milliseconds(double seconds)
{
    return 1000.0 * seconds;
}

std::string told(std::optional<double> seconds)
{
    std::array<char, 32> text{};
    if (!seconds) return "        - ms";
    std::snprintf(text.data(), text.size(), "%9.1f ms", milliseconds(*seconds));
    return text.data();
}

/// A paragraph for each request that ran something, and for the first that did not.
void printForPeople(const Session& session)
{
    for (const Outcome& outcome : session.outcomes())
    {
        Output::printLine(Output::strong(outcome.context + ": " + outcome.object) +
                          (outcome.runs.empty() ? " (nothing to do)" : ""));
        for (const Run& run : outcome.runs)
            Output::printLine("  " + Output::padded(run.object, 20) + told(run.seconds) +
                              (run.hasFailed ? Output::alarming("  failed") : ""));
    }
    for (const std::string& file : session.saved()) Output::printLine("saved " + file);
}

Json jsonOf(const Run& run)
{
    return {{"object", run.object},
            {"outcome", run.hasFailed ? "failed" : "updated"},
            {"milliseconds", run.seconds ? Json(milliseconds(*run.seconds)) : Json()},
            {"age", run.age}};
}

Json jsonOf(const Outcome& outcome)
{
    Json ran = Json::array();
    for (const Run& run : outcome.runs) ran.push_back(jsonOf(run));
    Json request{{"context", outcome.context},
                 {"object", outcome.object},
                 {"milliseconds", milliseconds(outcome.seconds)},
                 {"ran", ran}};
    if (!outcome.failure.empty()) request["failure"] = outcome.failure;
    if (outcome.isCancelled) request["cancelled"] = true;
    return request;
}

/// While it watches, a document is a line.
void printAsJson(const Order& order, const Session& session)
{
    Json requests = Json::array();
    for (const Outcome& outcome : session.outcomes()) requests.push_back(jsonOf(outcome));
    Output::printJson({{"network", order.file}, {"requests", requests}, {"saved", session.saved()}},
                      order.isWatching);
}

/// Evaluates, saves and prints. \return whether all succeeded.
bool evaluate(const Order& order, const Settings& settings, const HostNetwork& network, bool isNew)
{
    Session session(order, network);
    if (isNew)
        session.setInputs();
    else
        session.restoreInputs();
    session.evaluate();
    session.takeTurns();
    session.heedInterruption();
    if (!session.hasFailed()) session.save();
    if (settings.asJson)
        printAsJson(order, session);
    else
        printForPeople(session);
    session.complain();
    return !session.hasFailed();
}

/// By what a change of a file is seen: its time, its size, and which file it is, as one that takes
/// its place can be of the same moment. Zeros if there is none.
using FileStamp = std::tuple<std::int64_t, std::int64_t, std::int64_t, ino_t>;

FileStamp stampOf(const std::string& file)
{
    struct stat facts = {};
    if (::stat(file.c_str(), &facts) != 0) return {};
    return {facts.st_mtim.tv_sec, facts.st_mtim.tv_nsec, facts.st_size, facts.st_ino};
}

/// Follows the file until Ctrl-C. What is wrong with it meanwhile is told, and waits to be mended;
/// so does an order that does not fit the file any more.
/// \param stamp of the file as it was before it was read for the first time.
void watch(const Order& order, const Settings& settings, HostNetwork& network, FileStamp stamp)
{
    constexpr std::chrono::milliseconds kInterval(50);
    bool isNew = false; // what the order sets has to be set
    for (; !Interruption::isWanted(); std::this_thread::sleep_for(kInterval))
    {
        const auto now = stampOf(order.file);
        if (now == stamp) continue;
        stamp = now;
        try
        {
            isNew |= network.reread();
            evaluate(order, settings, network, isNew);
            isNew = false;
        }
        catch (...)
        {
            Output::complain(wordsOfException());
        }
        Output::finish();
    }
}

void run(const Order& order, const Settings& settings)
{
    const FileStamp stamp = stampOf(order.file);
    HostNetwork network(order.file, settings,
                        order.isWatching ? NetworkReading::Again : NetworkReading::Once);
    const bool hasSucceeded = evaluate(order, settings, network, true);
    Output::finish();
    if (order.isWatching)
        watch(order, settings, network, stamp);
    else if (!hasSucceeded)
        throw CLI::RuntimeError(Failed);
}

} // namespace

void addRunCommand(CLI::App& program, const Settings& settings)
{
    CLI::App* const command = program.add_subcommand(
        "run", "Builds the network of a file, evaluates it in its contexts, and tells what ran.");
    const auto order = std::make_shared<Order>();
    command->fallthrough();
    command->add_option("FILE", order->file, "a network file")->required();
    order->choice.addTo(*command);
    addRepeated(*command, "--save", order->saves, "OBJECT=FILE",
                "save an object when it is up to date");
    command
        ->add_option("--turns", order->turns,
                     "go on for so many turns, in which work in the background is taken in")
        ->type_name("N")
        ->check(CLI::Range(0, 1'000'000));
    command->add_flag("--watch", order->isWatching,
                      "follow the file until Ctrl-C: run what a change of it touches, again");
    command->footer("\nExamples:\n  zelm run geoid.json --context world --set region.width=720\n"
                    "  zelm run geoid.json --watch");
    command->callback([order, &settings] { run(*order, settings); });
}

} // namespace Zelm
