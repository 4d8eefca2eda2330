#include "Recorder.h"

#include "InputList.h"

#include <quorl/objects/VObject.h>
#include <quorl/objects/VStateCreatorBase.h>
#include <quorl/slots/VParameter.h>
#include <quorl/slots/VSlot.h>
#include <quorl/values/ValuePool.h>
#include <zelm/network/NetworkError.h>

#include <algorithm>
#include <utility>
#include <vector>

namespace Zelm
{

using Quorl::ValuePool;
using Quorl::VObject;
using Quorl::VParameter;
using Quorl::VSlot;

/// Knows where the walk is.
class Recorder::Watcher
{
public:
    Watcher(const Recorder& ticket, std::function<bool()> wish)
        : ticket_(ticket), wish_(std::move(wish))
    {
    }

    void begin(const RefPtr<VObject>& root)
    {
        account_.begin = Quorl::Ageable::GlobalTime.stamp();
        next_ = root;
        countBefore_ = root->RequestCounter.value();
    }

    /// The walk asks. \return whether it is cancelled.
    bool poll()
    {
        if (++polls_ > kMostPolls) account_.isWhole = false;
        const bool isCancelled = !account_.isWhole || (wish_ && wish_());
        if (isElsewhere()) return isCancelled;
        follow();
        Visit& visit = path_.back();
        hearAnswer(visit);
        if (visit.nextInput < visit.slots.size())
            look(visit, isCancelled);
        else
            conclude(visit, isCancelled);
        return isCancelled;
    }

    void noteRun(const VObject& object)
    {
        if (!path_.empty() && path_.back().story.object.rawptr() == &object)
            path_.back().hasRun = true;
    }

    std::optional<Story> decided() const
    {
        if (path_.empty() || !path_.back().isConcluding) return std::nullopt;
        return finished(path_.back());
    }

    Account end(const RefPtr<VObject>& root, const std::string& failure)
    {
        account_.failure = failure;
        if (!failure.empty()) endBroken();
        while (!path_.empty()) leave();
        if (account_.stories().empty()) account_.add(untold(root));
        return std::move(account_);
    }

private:
    static constexpr long kMostPolls = 10'000'000; // of which a walk with many paths has more

    struct Visit
    {
        Story story;
        std::vector<RefPtr<VSlot>> slots;
        std::size_t nextInput = 0;
        Stamp newest = kNever;        // what the object will be as young as
        RefPtr<VParameter> parameter; // of the input that was looked at last
        bool isWaiting = false;       // for the answer of its source
        std::size_t doubted =
            Hit::kNoInput; // whose source failed, and may have answered either way
        bool isConcluding = false;
        bool hasRun = false;
        int count = 0; // of the requests at the object, this one included
    };

    Stamp ageOf(const VObject& object) const { return object.age(ticket_.Pool).stamp(); }
    Stamp ageOf(const VParameter& parameter) const { return parameter.age(ticket_.Pool).stamp(); }

    static void raise(Stamp& age, Stamp other) { age = std::max(age, other); }

    /// Whether an update lets this ticket travel elsewhere.
    bool isElsewhere() const
    {
        if (path_.empty()) return !next_ || next_->RequestCounter.value() <= countBefore_;
        const Visit& last = path_.back();
        return last.isConcluding && last.story.object->RequestCounter.value() >= last.count;
    }

    /// Ends and begins visits as the walk has done since it last asked.
    void follow()
    {
        if (!path_.empty() && path_.back().isConcluding)
            leave();
        else if (next_ && next_->RequestCounter.value() > countBefore_)
            enter();
    }

    void enter()
    {
        Visit& visit = path_.emplace_back();
        const VObject& object = *next_;
        visit.count = object.RequestCounter.value();
        visit.slots = inputsOf(object);
        visit.story = untold(std::exchange(next_, {}));
        visit.newest = visit.story.age;
    }

    Story untold(const RefPtr<VObject>& object) const
    {
        Story story;
        story.object = object;
        story.end = Story::End::Occupied; // unless a visit tells otherwise
        story.age = ageOf(*object);
        story.connectionAge = object->ConnectionAge().stamp();
        for (const RefPtr<VSlot>& slot : inputsOf(*object))
        {
            InputStory& input = story.inputs.emplace_back();
            input.name = slot->Name;
            if (slot->Parameter) input.source = slot->Parameter->source;
        }
        return story;
    }

    void leave()
    {
        Story story = finished(path_.back());
        path_.pop_back();
        wasModified_ = story.end == Story::End::Ran;
        hasFailed_ = story.end == Story::End::Failed;
        account_.add(std::move(story));
    }

    Story finished(const Visit& visit) const
    {
        Story story = visit.story;
        if (story.end == Story::End::Cancelled || story.end == Story::End::Broken) return story;
        if (visit.hasRun && story.hits.empty())
            story.hits.push_back(visit.doubted == Hit::kNoInput
                                     ? Hit{Row::Demanded, Hit::kNoInput, kNever, story.age}
                                     : Hit{Row::SourceModified, visit.doubted,
                                           story.inputs[visit.doubted].age, story.age});
        const bool hasSucceeded = visit.hasRun && ageOf(*story.object) >= visit.newest;
        if (story.end != Story::End::Threw)
            story.end = story.hits.empty() ? Story::End::Idle
                        : hasSucceeded     ? Story::End::Ran
                                           : Story::End::Failed;
        return story;
    }

    /// What an exception has passed stays occupied, unless it is freed.
    void endBroken()
    {
        for (Visit& visit : path_)
        {
            visit.story.end = visit.isConcluding ? Story::End::Threw : Story::End::Broken;
            if (!visit.isConcluding) visit.story.object->removeRequest(ticket_);
        }
    }

    // The inputs

    void look(Visit& visit, bool isCancelled)
    {
        const VSlot& slot = *visit.slots[visit.nextInput];
        InputStory& input = visit.story.inputs[visit.nextInput];
        ++visit.nextInput;
        if (isCancelled)
        {
            visit.nextInput = visit.slots.size();
            return;
        }
        visit.parameter = slot.Parameter;
        input.ownAge = ageOf(*visit.story.object);
        if (visit.parameter)
        {
            input.age = ageOf(*visit.parameter);
            input.source = visit.parameter->source;
        }
        input.fate = fateOf(*visit.story.object, visit.slots[visit.nextInput - 1]);
        compare(visit, input);
        await(visit, input);
    }

    InputStory::Fate fateOf(const VObject& object, const RefPtr<VSlot>& slot) const
    {
        using Fate = InputStory::Fate;
        if (!slot->Parameter) return Fate::Empty;
        if (object.checkIfIgnoredInputClass(slot->InputClass)) return Fate::IgnoredClass;
        if (object.ignoreInput(slot)) return Fate::IgnoredName;
        const RefPtr<VObject> source = slot->Parameter->source;
        if (!source) return Fate::Pure;
        if (!source->RequestProcessing) return Fate::NotReady;
        if (source->hasRequest(ticket_)) return Fate::CycleCut;
        return source->Current ? Fate::Occupied : Fate::Asked;
    }

    static bool takesPart(const InputStory& input)
    {
        return input.fate != InputStory::Fate::Empty &&
               input.fate != InputStory::Fate::IgnoredClass &&
               input.fate != InputStory::Fate::IgnoredName;
    }

    static void compare(Visit& visit, const InputStory& input)
    {
        if (!takesPart(input) || input.age <= input.ownAge) return;
        hit(visit, Row::InputNewer, input.age, input.ownAge);
        if (input.fate == InputStory::Fate::Pure)
            hit(visit, Row::PureInputNewer, input.age, input.ownAge);
    }

    /// The condition holds at the input that was looked at last.
    static void hit(Visit& visit, Row row, Stamp age, Stamp ownAge)
    {
        visit.story.hits.push_back({row, visit.nextInput - 1, age, ownAge});
        raise(visit.newest, age);
    }

    void await(Visit& visit, const InputStory& input)
    {
        visit.isWaiting =
            input.fate == InputStory::Fate::Asked || input.fate == InputStory::Fate::Occupied;
        if (!visit.isWaiting) return;
        wasModified_ = input.fate == InputStory::Fate::Occupied;
        hasFailed_ = false;
        next_ = input.source;
        countBefore_ = next_->RequestCounter.value();
    }

    void hearAnswer(Visit& visit)
    {
        if (!std::exchange(visit.isWaiting, false)) return;
        next_ = {};
        InputStory& input = visit.story.inputs[visit.nextInput - 1];
        const Stamp ownAge = ageOf(*visit.story.object);
        if (hasFailed_) visit.doubted = visit.nextInput - 1;
        if (wasModified_) hit(visit, Row::SourceModified, ageOf(*visit.parameter), ownAge);
        input.sourceAge = ageOf(*input.source);
        if (input.sourceAge > ownAge) hit(visit, Row::SourceNewer, input.sourceAge, ownAge);
    }

    // The decision

    void conclude(Visit& visit, bool isCancelled) const
    {
        Story& story = visit.story;
        visit.isConcluding = true;
        story.end = isCancelled ? Story::End::Cancelled : Story::End::Idle;
        if (isCancelled) return;
        const Stamp ownAge = ageOf(*story.object);
        const auto state = story.object->stateIn(ticket_.Pool);
        if (state && state->stamp() > 0) story.state = state->stamp();
        if (story.state && *story.state < ownAge)
            story.hits.push_back({Row::StateOld, Hit::kNoInput, *story.state, ownAge});
        if (story.age >= story.connectionAge) return;
        story.hits.push_back({Row::Reconnected, Hit::kNoInput, story.connectionAge, story.age});
        raise(visit.newest, story.object->ConnectionAge().stamp());
    }

    const Recorder& ticket_;
    const std::function<bool()> wish_;
    Account account_;
    std::vector<Visit> path_;  // from the object where the walk began
    RefPtr<VObject> next_;     // that is asked next, if the walk enters it
    int countBefore_ = 0;      // of its requests
    bool wasModified_ = false; // what the object of the last visit answered
    bool hasFailed_ = false;   // its update
    long polls_ = 0;
};

Recorder::Recorder(const RefPtr<ValuePool>& pool, std::function<bool()> isToBeCancelled)
    : VRequest(pool, false), watcher_(new Watcher(*this, std::move(isToBeCancelled)))
{
}

Recorder::~Recorder() = default;

bool Recorder::isCancelled() const
{
    return watcher_->poll();
}

Account Recorder::evaluate(const RefPtr<VObject>& root, double precision)
{
    for (const RefPtr<VObject>& object : upstreamOf(root)) object->insertUpdateFunction(&noteRun);
    watcher_->begin(root);
    std::string failure;
    try
    {
        root->init_request(*this, precision);
    }
    catch (...)
    {
        failure = wordsOfException();
    }
    return watcher_->end(root, failure);
}

std::optional<Story> Recorder::decided() const
{
    return watcher_->decided();
}

bool Recorder::noteRun(VObject* object, VRequest& request, double /*precision*/)
{
    if (const auto* const recorder = dynamic_cast<Recorder*>(&request))
        recorder->watcher_->noteRun(*object);
    return true;
}

} // namespace Zelm
