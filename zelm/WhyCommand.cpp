#include "Choice.h"
#include "Commands.h"
#include "Evaluation.h"
#include "Failure.h"
#include "Interruption.h"
#include "Output.h"
#include "WhyText.h"

#include <quorl/objects/VObject.h>
#include <quorl/values/ValuePool.h>
#include <zelm/why/Explanation.h>
#include <zelm/why/Predictor.h>
#include <zelm/why/Recorder.h>

#include <algorithm>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace Zelm
{
namespace
{

using Quorl::ValuePool;
using Quorl::VObject;

struct WhyOrder
{
    std::string file;
    std::string object;
    Choice choice;
    bool isAhead = false;
};

/// One question, which is put to one network.
class Question
{
public:
    Question(const WhyOrder& order, const HostNetwork& network)
        : order_(order), network_(network.handle()),
          object_(objectOf(*network_, "OBJECT", order.object)),
          contexts_(order.choice.contextsOf(*network_)), requests_(order.choice.requestsOf(network))
    {
    }

    /// Makes everything fresh, as the file says, and then stale by what is set; so that what is
    /// explained is the difference.
    void prepare()
    {
        if (order_.choice.sets.empty()) return;
        const Evaluation evaluation(network_);
        for (const RefPtr<ValuePool>& context : contexts_)
            for (const RequestEntry& request : requests_)
                if (HostNetwork::isFor(request, context->name))
                    note(evaluation.request(network_->object(request.object), context,
                                            request.precision));
        order_.choice.setInputs(*network_, contexts_);
    }

    std::vector<Answer> answers()
    {
        std::vector<Answer> answers;
        for (const RefPtr<ValuePool>& context : contexts_) answers.push_back(answerIn(context));
        return answers;
    }

    const std::vector<std::string>& failures() const { return failures_; }

private:
    /// What was interrupted explains nothing.
    static void heed(const std::string& context)
    {
        if (Interruption::isWanted()) throw std::runtime_error(context + ": interrupted");
    }

    void note(const Outcome& outcome)
    {
        heed(outcome.context);
        std::ranges::copy(failuresOf(outcome), std::back_inserter(failures_));
    }

    void note(const Account& account, const std::string& context)
    {
        heed(context);
        for (const std::string& failure : failuresOf(account))
            failures_.push_back(context + ": " + failure);
    }

    /// Of the request that runs the object; else of one that reaches it.
    Answer answerIn(const RefPtr<ValuePool>& context)
    {
        Answer answer;
        answer.context = context->name;
        bool isAnswered = false;
        for (const RequestEntry& request : requests_)
        {
            if (!HostNetwork::isFor(request, context->name)) continue;
            const Answer next = answerTo(request, context);
            const bool isBetter = next.explanation.hadToRun() ||
                                  (next.explanation.story && !answer.explanation.story);
            if (!isAnswered || isBetter) answer = next;
            isAnswered = true;
            if (answer.explanation.hadToRun()) break;
        }
        answer.explanation.object = object_->getName();
        return answer;
    }

    Answer answerTo(const RequestEntry& request, const RefPtr<ValuePool>& context)
    {
        const RefPtr<VObject> root = network_->object(request.object);
        const Explanation before =
            explained(foreseen(root, context, request.precision), root, object_);
        Answer answer{context->name, root->getName(), before, true};
        if (order_.isAhead) return answer;
        const Account account =
            Recorder(context, &Interruption::isWanted).evaluate(root, request.precision);
        note(account, context->name);
        if (!account.isWhole) return answer; // there are too many paths to walk
        answer.explanation = explained(account, root, object_);
        answer.isForeseen = answer.explanation.json() == before.json();
        return answer;
    }

    const WhyOrder& order_;
    const RefPtr<LoadedNetwork> network_;
    const RefPtr<VObject> object_;
    const std::vector<RefPtr<ValuePool>> contexts_;
    const std::vector<RequestEntry> requests_;
    std::vector<std::string> failures_;
};

void ask(const WhyOrder& order, const Settings& settings)
{
    const HostNetwork network(order.file, settings);
    Question question(order, network);
    question.prepare();
    const std::vector<Answer> answers = question.answers();
    if (settings.asJson)
    {
        Json list = Json::array();
        for (const Answer& answer : answers) list.push_back(jsonOf(answer));
        Output::printJson({{"network", order.file}, {"answers", list}});
    }
    else
        for (const Answer& answer : answers) Output::print(textOf(answer));
    for (const std::string& failure : question.failures()) Output::complain(failure);
    if (!question.failures().empty()) throw CLI::RuntimeError(Failed);
}

} // namespace

void addWhyCommand(CLI::App& program, const Settings& settings)
{
    CLI::App* const command = program.add_subcommand(
        "why", "Tells why an object runs, down to the change that started it, or why it does not.");
    const auto order = std::make_shared<WhyOrder>();
    command->fallthrough();
    command->add_option("FILE", order->file, "a network file")->required();
    command->add_option("OBJECT", order->object, "the object in question")->required();
    order->choice.addTo(*command);
    command->add_flag("--ahead", order->isAhead,
                      "tell it by the ages alone, before the request, which is not made");
    command->footer(
        "\nWith --set the network is evaluated first, as the file says: what is explained is what\n"
        "the request after the change does. Without, it is the first request of all.\n"
        "\nExamples:\n  zelm why geoid.json picture\n"
        "  zelm why geoid.json picture --context india --set hillshade.azimuth=90\n"
        "  zelm why geoid.json reader --set hillshade.azimuth=90");
    command->callback([order, &settings] { ask(*order, settings); });
}

} // namespace Zelm
