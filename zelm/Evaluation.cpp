#include "Evaluation.h"

#include "Interruption.h"

#include <quorl/foundation/Interface.h>
#include <quorl/foundation/Profiler.h>
#include <quorl/foundation/Timer.h>
#include <quorl/objects/CancellableRequest.h>
#include <quorl/objects/VObject.h>
#include <quorl/objects/VRequest.h>
#include <quorl/services/VActionNotifier.h>
#include <quorl/values/ValuePool.h>
#include <zelm/network/NetworkError.h>

#include <algorithm>
#include <vector>

namespace Zelm
{
namespace
{

using Quorl::CancellableRequest;
using Quorl::ValuePool;
using Quorl::VObject;
using Quorl::VRequest;

/// Sections that are listened to. As long as somebody listens, a walk takes every path of a
/// network, and paths may be an exponential of its objects.
constexpr int kMostSections = 1'000'000;

/// Which objects ran, and how long each took by itself: an object's request is a section of the
/// profiler, with those that it asks inside. Where there are too many of them, times are not told.
class Journal final : public Tolmen::Interface<Journal>, public Tolmen::Profiler::Listener
{
public:
    /// An update function.
    static bool noteRun(VObject* object, VRequest& request, double /*precision*/)
    {
        if (!request.Attachments) return true;
        const RefPtr<Journal> journal = request.Attachments->findInterface(typeid(Journal));
        return !journal || journal->note(*object, request.Pool);
    }

    Journal(const std::string& context, std::size_t size)
        : context_(context), objects_(static_cast<int>(size))
    {
    }

    /// No more comes.
    void finish() const { Quorl::VActionNotifier::ProgressInfo(id_, context_, objects_, objects_); }

    void opened(const Tolmen::Profiler::Section& /*section*/) override
    {
        open_.emplace_back();
        if (++sections_ == kMostSections) Tolmen::Profiler::setListener(nullptr);
    }

    void closed(const Tolmen::Profiler::Section& /*section*/, double seconds) override
    {
        const Open mine = open_.back();
        open_.pop_back();
        if (!open_.empty()) open_.back().secondsInside += seconds;
        if (mine.run >= 0)
            runs[static_cast<std::size_t>(mine.run)].seconds = seconds - mine.secondsInside;
    }

    std::vector<Run> runs;                // with the ages of before
    std::vector<RefPtr<VObject>> objects; // of the runs

private:
    struct Open
    {
        double secondsInside = 0.0; // of those that it asked
        int run = -1;               // its place among the runs, if it ran
    };

    /// \return whether the object is to run.
    bool note(VObject& object, const RefPtr<ValuePool>& pool)
    {
        const auto done = static_cast<int>(runs.size());
        const bool isListening = sections_ < kMostSections;
        if (!open_.empty() && isListening) open_.back().run = done;
        runs.push_back({object.getName(), {}, object.age(pool).stamp()});
        objects.emplace_back(&object);
        return Quorl::VActionNotifier::ProgressInfo(id_, context_ + ": " + object.getName(), done,
                                                    objects_);
    }

    const std::string context_;
    const int objects_; // of the network, not all of which have to run
    const unsigned long id_ = Quorl::VActionNotifier::getNewProgressID();
    std::vector<Open> open_;
    int sections_ = 0;
};

/// Listens to the profiler for as long as it lives.
class Listening
{
public:
    explicit Listening(Journal& journal) : before_(Tolmen::Profiler::setListener(&journal)) {}
    ~Listening() { Tolmen::Profiler::setListener(before_); }
    Listening(const Listening&) = delete;
    Listening& operator=(const Listening&) = delete;

private:
    Tolmen::Profiler::Listener* const before_;
};

} // namespace

bool isStale(const VObject& object, const RefPtr<ValuePool>& context)
{
    const auto& age = object.age(context);
    return age < object.YoungestInput(context) || age < object.ConnectionAge();
}

bool Outcome::hasFailed() const
{
    return !failure.empty() || isCancelled || std::ranges::any_of(runs, &Run::hasFailed);
}

std::vector<std::string> failuresOf(const Outcome& outcome)
{
    const std::string where = outcome.context + ": ";
    std::vector<std::string> failures;
    if (!outcome.failure.empty()) failures.push_back(where + outcome.failure);
    if (outcome.isCancelled) failures.push_back(where + "interrupted");
    if (!failures.empty()) return failures; // by which others can have failed
    for (const Run& run : outcome.runs)
        if (run.hasFailed) failures.push_back(where + run.object + " has failed");
    return failures;
}

Evaluation::Evaluation(const RefPtr<LoadedNetwork>& network) : network_(network)
{
    for (const RefPtr<VObject>& object : network_->liveObjects())
        object->insertUpdateFunction(&Journal::noteRun);
}

Outcome Evaluation::request(const RefPtr<VObject>& object, const RefPtr<ValuePool>& context,
                            double precision) const
{
    Outcome outcome;
    outcome.context = context->name;
    outcome.object = object->getName();
    const RefPtr<Journal> journal(new Journal(context->name, network_->objects.size()));
    CancellableRequest ticket(context, false, Interruption::wish());
    ticket.addInterface(journal);
    const Tolmen::Timer watch;
    try
    {
        const Listening listening(*journal);
        object->init_request(ticket, precision);
    }
    catch (...)
    {
        const bool hasRun = !journal->runs.empty(); // then it is the last that has thrown
        outcome.failure = (hasRun ? journal->runs.back().object + ": " : "") + wordsOfException();
        for (const RefPtr<VObject>& passed : network_->liveObjects()) passed->removeRequest(ticket);
    }
    journal->finish();
    outcome.seconds = watch.seconds();
    outcome.isCancelled = ticket.isCancelled();
    outcome.runs = journal->runs;
    for (std::size_t at = 0; at < outcome.runs.size(); ++at)
    {
        const VObject& ran = *journal->objects[at];
        const long long ageBefore = outcome.runs[at].age;
        outcome.runs[at].age = ran.age(context).stamp();
        outcome.runs[at].hasFailed = outcome.runs[at].age == ageBefore && isStale(ran, context);
    }
    return outcome;
}

} // namespace Zelm
