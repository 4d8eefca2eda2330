#include "Story.h"

#include <quorl/objects/VObject.h>

#include <utility>

namespace Zelm
{

void Account::add(Story story)
{
    const auto [entry, isNew] = places_.try_emplace(&*story.object, stories_.size());
    if (isNew)
        stories_.push_back(std::move(story));
    else if (!stories_[entry->second].hadToRun() && story.hadToRun())
        stories_[entry->second] = std::move(story);
}

const Story* Account::of(const Quorl::VObject& object) const
{
    const auto entry = places_.find(&object);
    return entry == places_.end() ? nullptr : &stories_[entry->second];
}

std::vector<std::string> failuresOf(const Account& account)
{
    std::vector<std::string> failures;
    for (const Story& story : account.stories())
    {
        if (story.end == Story::End::Failed)
            failures.push_back(story.object->getName() + " has failed");
        if (story.end == Story::End::Threw)
            failures.push_back(story.object->getName() + ": " + account.failure);
    }
    return failures;
}

std::string wordsOf(Row row)
{
    switch (row)
    {
        case Row::InputNewer: return "the input is newer";
        case Row::PureInputNewer: return "the pure input is newer";
        case Row::SourceModified: return "its source was modified";
        case Row::SourceNewer: return "its source is newer";
        case Row::StateOld: return "its state is old";
        case Row::Reconnected: return "its connections have changed";
        case Row::Demanded: break;
    }
    return "it demands to run";
}

std::string wordsOf(Story::End end)
{
    switch (end)
    {
        case Story::End::Idle: return "idle";
        case Story::End::Ran: return "ran";
        case Story::End::Failed: return "failed";
        case Story::End::Threw: return "threw";
        case Story::End::Cancelled: return "cancelled";
        case Story::End::Occupied: return "occupied";
        case Story::End::Broken: break;
    }
    return "broken";
}

std::string wordsOf(InputStory::Fate fate)
{
    switch (fate)
    {
        case InputStory::Fate::Unvisited: return "not looked at";
        case InputStory::Fate::Empty: return "nothing is attached";
        case InputStory::Fate::IgnoredClass: return "ignored: its input class";
        case InputStory::Fate::IgnoredName: return "ignored: its name";
        case InputStory::Fate::NotReady: return "its source is not ready";
        case InputStory::Fate::CycleCut: return "a circle is cut here";
        case InputStory::Fate::Occupied: return "another evaluation is inside its source";
        case InputStory::Fate::Pure:
        case InputStory::Fate::Asked: break;
    }
    return {};
}

} // namespace Zelm
