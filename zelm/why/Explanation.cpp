#include "Explanation.h"

#include "InputList.h"

#include <quorl/objects/VObject.h>
#include <quorl/slots/VParameter.h>
#include <quorl/slots/VSlot.h>

#include <algorithm>
#include <unordered_map>
#include <unordered_set>

namespace Zelm
{
namespace
{

using Quorl::VObject;
using Quorl::VSlot;
using Fate = InputStory::Fate;
using End = Story::End;

// The chain

const InputStory* inputOf(const Story& story, const Hit& hit)
{
    return hit.input == Hit::kNoInput ? nullptr : &story.inputs[hit.input];
}

std::string wordsOf(const Story& story, const Hit& hit)
{
    const InputStory* const input = inputOf(story, hit);
    if (!input) return wordsOf(hit.row);
    if (hit.row == Row::SourceModified) return input->source->getName() + " was modified";
    if (hit.row == Row::SourceNewer) return input->source->getName() + " is newer";
    return wordsOf(hit.row);
}

/// The story of the object in which a condition has its cause; null if that is not in this request.
const Story* causeOf(const Account& account, const Story& story, const Hit& hit)
{
    const InputStory* const input = inputOf(story, hit);
    if (!input || !input->source || hit.row == Row::PureInputNewer) return nullptr;
    const bool isOfThisRequest = hit.row == Row::SourceModified || hit.age > account.begin;
    const Story* const cause = isOfThisRequest ? account.of(*input->source) : nullptr;
    return cause && cause->hadToRun() ? cause : nullptr;
}

/// What happened at the end of the chain.
std::string startOf(const Story& story, const Hit& hit)
{
    const std::string name = story.object->getName();
    const InputStory* const input = inputOf(story, hit);
    if (story.age == kNever) return name + " has never run in this context";
    if (input && input->fate == Fate::Occupied && hit.row == Row::SourceModified)
        return "another evaluation is inside " + input->source->getName();
    if (hit.row == Row::SourceNewer) return input->source->getName() + " ran in an earlier request";
    if (input) return name + "." + input->name + " was changed";
    if (hit.row == Row::StateOld) return "the state of " + name + " was left behind";
    if (hit.row == Row::Reconnected) return "an input of " + name + " was attached";
    return name + " demands to run";
}

void follow(const Account& account, const Story& first, Explanation& explanation)
{
    std::unordered_set<const Story*> met;
    for (const Story* story = &first; story && met.insert(story).second;)
    {
        const Hit& hit = story->hits.front();
        const InputStory* const input = inputOf(*story, hit);
        explanation.chain.push_back({story->object->getName(), hit.row,
                                     input ? input->name : std::string(), hit.age, hit.ownAge,
                                     wordsOf(*story, hit)});
        explanation.start = startOf(*story, hit);
        story = causeOf(account, *story, hit);
    }
}

// What keeps a request away

/// The objects that some input of which leads to a given one, over ignored inputs as well.
std::unordered_set<const VObject*> leadingTo(const VObject& object, const RefPtr<VObject>& root)
{
    std::unordered_map<const VObject*, std::vector<const VObject*>> users;
    for (const RefPtr<VObject>& user : upstreamOf(root))
        for (const RefPtr<VSlot>& slot : inputsOf(*user))
        {
            if (!slot->Parameter) continue;
            const RefPtr<VObject> source = slot->Parameter->source;
            if (source) users[&*source].push_back(&*user);
        }
    std::vector<const VObject*> ways{&object};
    std::unordered_set<const VObject*> found{&object};
    for (std::size_t at = 0; at < ways.size(); ++at)
        for (const VObject* const user : users[ways[at]])
            if (found.insert(user).second) ways.push_back(user);
    return found;
}

bool isBarrier(Fate fate)
{
    return fate != Fate::Asked && fate != Fate::Pure && fate != Fate::Empty &&
           fate != Fate::CycleCut;
}

std::vector<Explanation::Barrier> barriersTo(const Account& account, const VObject& object,
                                             const RefPtr<VObject>& root)
{
    const std::unordered_set<const VObject*> ways = leadingTo(object, root);
    std::vector<Explanation::Barrier> barriers;
    for (const Story& story : account.stories())
        for (const InputStory& input : story.inputs)
            if (input.source && isBarrier(input.fate) && ways.contains(&*input.source))
                barriers.push_back({story.object->getName(), input.name, input.fate});
    return barriers;
}

Json jsonOf(Stamp age, Stamp begin)
{
    if (age == kNever) return nullptr;
    return age > begin ? Json("new") : Json(age);
}

const char* nameOf(Fate fate)
{
    switch (fate)
    {
        case Fate::Unvisited: return "not looked at";
        case Fate::Empty: return "empty";
        case Fate::IgnoredClass: return "ignored class";
        case Fate::IgnoredName: return "ignored name";
        case Fate::Pure: return "pure";
        case Fate::NotReady: return "not ready";
        case Fate::CycleCut: return "cycle cut";
        case Fate::Occupied: return "occupied";
        case Fate::Asked: break;
    }
    return "asked";
}

Json inputsOf(const Story& story, Stamp begin)
{
    Json inputs = Json::array();
    for (std::size_t at = 0; at < story.inputs.size(); ++at)
    {
        const InputStory& input = story.inputs[at];
        Json rows = Json::array();
        for (const Hit& hit : story.hits)
            if (hit.input == at) rows.push_back(static_cast<int>(hit.row));
        Json entry{{"input", input.name}, {"fate", nameOf(input.fate)}, {"rows", rows}};
        if (input.source) entry["source"] = input.source->getName();
        entry["age"] = jsonOf(input.age, begin);
        entry["own age"] = jsonOf(input.ownAge, begin);
        if (input.source) entry["source age"] = jsonOf(input.sourceAge, begin);
        inputs.push_back(entry);
    }
    return inputs;
}

} // namespace

Explanation explained(const Account& account, const RefPtr<VObject>& root,
                      const RefPtr<VObject>& object)
{
    Explanation explanation;
    explanation.object = object->getName();
    explanation.begin = account.begin;
    const Story* const story = account.of(*object);
    if (!story)
    {
        explanation.barriers = barriersTo(account, *object, root);
        return explanation;
    }
    explanation.story = *story;
    if (story->hadToRun()) follow(account, *story, explanation);
    return explanation;
}

std::string Explanation::verdict() const
{
    if (!story) return barriers.empty() ? "is not upstream" : "is not reached";
    switch (story->end)
    {
        case End::Idle: return "does not run: nothing is newer";
        case End::Ran: return "runs";
        case End::Failed: return "runs, and fails";
        case End::Threw: return "runs, and throws";
        case End::Cancelled: return "does not run: the request was cancelled";
        case End::Occupied: return "does not run: another evaluation is inside";
        case End::Broken: break;
    }
    return "does not run: an update upstream has thrown";
}

Json Explanation::json() const
{
    Json json{{"object", object}, {"verdict", verdict()}, {"runs", hadToRun()}};
    if (story)
    {
        json["outcome"] = wordsOf(story->end);
        json["age"] = jsonOf(story->age, begin);
        json["connection age"] = jsonOf(story->connectionAge, begin);
        json["state age"] = story->state ? jsonOf(*story->state, begin) : Json(nullptr);
        json["inputs"] = inputsOf(*story, begin);
    }
    Json links = Json::array();
    for (const Link& link : chain)
        links.push_back({{"object", link.object},
                         {"row", static_cast<int>(link.row)},
                         {"input", link.input.empty() ? Json(nullptr) : Json(link.input)},
                         {"age", jsonOf(link.age, begin)},
                         {"own age", jsonOf(link.ownAge, begin)},
                         {"because", link.words}});
    json["chain"] = links;
    if (!start.empty()) json["start"] = start;
    Json kept = Json::array();
    for (const Barrier& barrier : barriers)
        kept.push_back(
            {{"object", barrier.object}, {"input", barrier.input}, {"fate", nameOf(barrier.fate)}});
    if (!story) json["barriers"] = kept;
    return json;
}

std::string told(Stamp age, Stamp begin)
{
    if (age == kNever) return "never";
    return age > begin ? "new" : std::to_string(age);
}

} // namespace Zelm
