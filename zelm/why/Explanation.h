#pragma once

#include "Story.h"

#include <zelm/network/Json.h>

namespace Zelm
{

/// Why a request ran an object, or did not.
struct Explanation
{
    /// An object on the way from the one in question to the change that made it run.
    struct Link
    {
        std::string object;
        Row row;
        std::string input; ///< empty where none takes part
        Stamp age;         ///< of what is compared
        Stamp ownAge;
        std::string words;
    };

    /// An input at which the request was kept from what leads to the object.
    struct Barrier
    {
        std::string object;
        std::string input;
        InputStory::Fate fate;
    };

    /// Ages as JSON: "new" for what the request made itself, null for what never was.
    Json json() const;

    /// The answer in a few words.
    std::string verdict() const;

    bool hadToRun() const { return story && story->hadToRun(); }

    std::string object;
    std::optional<Story> story; ///< nothing if the request does not reach it
    std::vector<Link> chain;    ///< from the object in question upstream; empty if it did not run
    std::string start;          ///< the change at the end of the chain
    std::vector<Barrier> barriers; ///< if the request does not reach it
    Stamp begin = 0;               ///< of the request
};

Explanation explained(const Account& account, const RefPtr<Quorl::VObject>& root,
                      const RefPtr<Quorl::VObject>& object);

/// An age for people: "never", "new", or its number.
std::string told(Stamp age, Stamp begin);

} // namespace Zelm
