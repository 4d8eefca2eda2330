#include "Predictor.h"

#include "InputList.h"

#include <quorl/objects/VObject.h>
#include <quorl/objects/VRequest.h>
#include <quorl/objects/VStateCreatorBase.h>
#include <quorl/slots/VOutputIterator.h>
#include <quorl/slots/VParameter.h>
#include <quorl/slots/VSlot.h>
#include <quorl/values/ValuePool.h>

#include <algorithm>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace Zelm
{
namespace
{

using Quorl::ValuePool;
using Quorl::VObject;
using Quorl::VParameter;
using Quorl::VSlot;
using Fate = InputStory::Fate;

/// The ages of a context as they would be: as they are, but for what would have happened.
class Future
{
public:
    explicit Future(const RefPtr<ValuePool>& context)
        : begin(Quorl::Ageable::GlobalTime.stamp()), context_(context), clock_(begin)
    {
    }

    Stamp of(const VObject& object) const
    {
        return moved(&object, [&] { return object.age(context_).stamp(); });
    }

    Stamp of(const VParameter& parameter) const
    {
        return moved(&parameter, [&] { return parameter.age(context_).stamp(); });
    }

    std::optional<Stamp> ofState(const VObject& object) const
    {
        const auto state = object.stateIn(context_);
        if (!state) return std::nullopt;
        const Stamp age = moved(&*state, [&] { return state->stamp(); });
        return age > 0 ? std::optional<Stamp>(age) : std::nullopt;
    }

    /// The object runs, and succeeds.
    void run(const VObject& object, Stamp newest)
    {
        Outputs outputs;
        object.iterateOutputs(outputs, typeid(void));
        for (const VParameter* const parameter : outputs.parameters) moved_[parameter] = ++clock_;
        if (const auto state = object.stateIn(context_)) moved_[&*state] = ++clock_;
        moved_[&object] = std::max(of(object), newest);
    }

    const Stamp begin;

private:
    struct Outputs final : Quorl::VOutputIterator
    {
        bool apply(const std::type_info& /*type*/, const RefPtr<VSlot>& slot) override
        {
            if (slot->Parameter) parameters.push_back(&*slot->Parameter);
            return true;
        }

        std::vector<const VParameter*> parameters;
    };

    template <class Ask>
    Stamp moved(const void* what, const Ask& ask) const
    {
        const auto entry = moved_.find(what);
        return entry == moved_.end() ? ask() : entry->second;
    }

    const RefPtr<ValuePool> context_;
    Stamp clock_;
    std::unordered_map<const void*, Stamp> moved_;
};

/// Plays one request through.
class Play
{
public:
    Play(const RefPtr<ValuePool>& context, bool isCancelled)
        : future_(context), ticket_(context, false), isCancelled_(isCancelled)
    {
        account_.begin = future_.begin;
    }

    Account of(const RefPtr<VObject>& root, double precision)
    {
        if (root->Current)
            account_.add(storyOf(root, Story::End::Occupied));
        else
            enter(root, precision);
        while (!path_.empty()) step();
        return std::move(account_);
    }

private:
    static constexpr long kMostSteps = 10'000'000; // circles can have endlessly many paths

    struct Scene
    {
        Story story;
        std::vector<RefPtr<VSlot>> slots;
        std::size_t next = 0;
        double precision;
        Stamp newest;
        bool isSettled = true; // a further request finds nothing to do here, nor upstream
    };

    void enter(const RefPtr<VObject>& object, double precision)
    {
        Story story = storyOf(object, Story::End::Idle);
        const Stamp age = story.age;
        path_.push_back({std::move(story), inputsOf(*object), 0, precision, age});
        inside_.insert(&*object);
    }

    Story storyOf(const RefPtr<VObject>& object, Story::End end) const
    {
        Story story;
        story.object = object;
        story.end = end;
        story.age = future_.of(*object);
        story.connectionAge = object->ConnectionAge().stamp();
        for (const RefPtr<VSlot>& slot : inputsOf(*object))
        {
            story.inputs.emplace_back().name = slot->Name;
            if (slot->Parameter) story.inputs.back().source = slot->Parameter->source;
        }
        return story;
    }

    void step()
    {
        if (++steps_ > kMostSteps) account_.isWhole = false;
        Scene& scene = path_.back();
        if (scene.next == scene.slots.size() || isCancelled_ || !account_.isWhole)
            conclude();
        else
            consider(scene, scene.next++);
    }

    void consider(Scene& scene, std::size_t at)
    {
        const RefPtr<VSlot>& slot = scene.slots[at];
        InputStory& input = scene.story.inputs[at];
        input.fate = fateOf(*scene.story.object, slot);
        input.ownAge = future_.of(*scene.story.object);
        if (slot->Parameter) input.age = future_.of(*slot->Parameter);
        switch (input.fate)
        {
            case Fate::Empty:
            case Fate::IgnoredClass:
            case Fate::IgnoredName:
            case Fate::Unvisited: return;
            case Fate::Pure:
                compare(scene, at, Row::InputNewer, input.age);
                compare(scene, at, Row::PureInputNewer, input.age);
                return;
            case Fate::NotReady: compare(scene, at, Row::InputNewer, input.age); return;
            case Fate::CycleCut:
                compare(scene, at, Row::InputNewer, input.age);
                scene.isSettled = false;
                return;
            case Fate::Occupied:
                compare(scene, at, Row::InputNewer, input.age);
                hear(scene, at, true, false);
                return;
            case Fate::Asked: break;
        }
        compare(scene, at, Row::InputNewer, input.age);
        if (settled_.contains(&*input.source))
            hear(scene, at, false, true);
        else
            enter(input.source, 1.0); // the precision is of the object that is requested alone
    }

    Fate fateOf(const VObject& object, const RefPtr<VSlot>& slot) const
    {
        if (!slot->Parameter) return Fate::Empty;
        if (object.checkIfIgnoredInputClass(slot->InputClass)) return Fate::IgnoredClass;
        if (object.ignoreInput(slot)) return Fate::IgnoredName;
        const RefPtr<VObject> source = slot->Parameter->source;
        if (!source) return Fate::Pure;
        if (!source->RequestProcessing) return Fate::NotReady;
        if (inside_.contains(&*source)) return Fate::CycleCut;
        return source->Current ? Fate::Occupied : Fate::Asked;
    }

    void compare(Scene& scene, std::size_t input, Row row, Stamp age) const
    {
        const Stamp ownAge = future_.of(*scene.story.object);
        if (age > ownAge) demand(scene, row, input, age, ownAge);
    }

    static void demand(Scene& scene, Row row, std::size_t input, Stamp age, Stamp ownAge)
    {
        scene.story.hits.push_back({row, input, age, ownAge});
        if (row != Row::StateOld && row != Row::Demanded)
            scene.newest = std::max(scene.newest, age);
    }

    /// The source of an input has answered.
    void hear(Scene& scene, std::size_t at, bool wasModified, bool isSettled)
    {
        scene.isSettled = scene.isSettled && isSettled;
        InputStory& input = scene.story.inputs[at];
        if (wasModified)
            demand(scene, Row::SourceModified, at, future_.of(*scene.slots[at]->Parameter),
                   future_.of(*scene.story.object));
        input.sourceAge = future_.of(*input.source);
        compare(scene, at, Row::SourceNewer, input.sourceAge);
    }

    void conclude()
    {
        Scene scene = std::move(path_.back());
        path_.pop_back();
        inside_.erase(&*scene.story.object);
        decide(scene);
        const bool wasModified = scene.story.end == Story::End::Ran;
        if (wasModified) future_.run(*scene.story.object, scene.newest);
        if (scene.isSettled) settled_.insert(&*scene.story.object);
        if (!path_.empty()) hear(path_.back(), path_.back().next - 1, wasModified, scene.isSettled);
        account_.add(std::move(scene.story));
    }

    void decide(Scene& scene)
    {
        Story& story = scene.story;
        if (isCancelled_ || !account_.isWhole)
        {
            story.end = Story::End::Cancelled;
            return;
        }
        story.state = future_.ofState(*story.object);
        const Stamp ownAge = future_.of(*story.object);
        if (story.state && *story.state < ownAge)
            demand(scene, Row::StateOld, Hit::kNoInput, *story.state, ownAge);
        if (story.age < story.connectionAge)
            demand(scene, Row::Reconnected, Hit::kNoInput, story.connectionAge, story.age);
        if (story.hits.empty() && story.object->must_update(ticket_, scene.precision))
            demand(scene, Row::Demanded, Hit::kNoInput, kNever, story.age);
        story.end = story.hits.empty() ? Story::End::Idle : Story::End::Ran;
        scene.isSettled = scene.isSettled && story.hits.empty();
    }

    Future future_;
    const Quorl::VRequest ticket_; // for objects that want to see one
    const bool isCancelled_;
    Account account_;
    std::vector<Scene> path_; // from the object where the request begins
    std::unordered_set<const VObject*> inside_;
    std::unordered_set<const VObject*> settled_;
    long steps_ = 0;
};

} // namespace

Account foreseen(const RefPtr<VObject>& root, const RefPtr<ValuePool>& context, double precision,
                 bool isCancelled)
{
    return Play(context, isCancelled).of(root, precision);
}

} // namespace Zelm
