#pragma once

#include <quorl/Forward.h>
#include <quorl/foundation/RefPtr.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace Zelm
{

using Quorl::RefPtr;

/// A moment of the kernel's clock; larger is younger.
using Stamp = std::int64_t;

constexpr Stamp kNever = -1; ///< of what has not happened in a context

/// The conditions under which a request runs an object, in the order in which they are tested.
enum class Row : int
{
    InputNewer = 1,     ///< a value is newer than the object
    PureInputNewer = 2, ///< and no object provides it
    SourceModified = 3, ///< the object behind an input answered that it was modified
    SourceNewer = 4,    ///< it is newer, after it was asked
    StateOld = 5,       ///< what the object keeps was modified before it last ran
    Reconnected = 6,    ///< an input was attached since
    Demanded = 7,       ///< by the object itself
};

/// What became of one input of an object when a request came by.
struct InputStory
{
    enum class Fate
    {
        Unvisited,    ///< the request ended before
        Empty,        ///< nothing is attached
        IgnoredClass, ///< the object does not recognise its input class
        IgnoredName,  ///< the object passes over it, by default because of its name
        Pure,         ///< no object provides it
        NotReady,     ///< what provides it takes no requests yet
        CycleCut,     ///< the walk is inside of what provides it: the circle ends here
        Occupied,     ///< another evaluation is there, so that it counts as modified
        Asked,        ///< what provides it was asked
    };

    std::string name;
    RefPtr<Quorl::VObject> source; ///< what provides it; or null
    Fate fate = Fate::Unvisited;
    Stamp age = kNever;       ///< of the value, before its source was asked
    Stamp ownAge = kNever;    ///< of the object then
    Stamp sourceAge = kNever; ///< of the source, once it was asked
};

/// A condition that held.
struct Hit
{
    static constexpr std::size_t kNoInput = SIZE_MAX;

    Row row;
    std::size_t input; ///< its place in the story; or `kNoInput`
    Stamp age;         ///< of what is compared
    Stamp ownAge;      ///< with the object's
};

/// What one visit of a request did at an object, and why.
struct Story
{
    enum class End
    {
        Idle, ///< nothing had to be done
        Ran,
        Failed,    ///< it had to run, and its update said that it failed
        Threw,     ///< it had to run, and its update threw
        Cancelled, ///< the request was
        Occupied,  ///< another evaluation is inside
        Broken,    ///< something upstream threw
    };

    bool hadToRun() const { return end == End::Ran || end == End::Failed || end == End::Threw; }

    RefPtr<Quorl::VObject> object;
    End end = End::Idle;
    Stamp age = kNever; ///< of the object, before the walk; as the next one
    Stamp connectionAge = kNever;
    std::optional<Stamp> state; ///< that was modified at some time
    std::vector<InputStory> inputs;
    std::vector<Hit> hits; ///< in the order of the tests; the first one decides
};

/// What a request does at all objects that it reaches: as it was seen, or as it is foreseen.
class Account
{
public:
    /// Of several visits of an object, the first that ran it is kept, or else the first.
    void add(Story story);

    /// \return null if the request does not reach the object.
    const Story* of(const Quorl::VObject& object) const;
    const std::vector<Story>& stories() const { return stories_; }

    Stamp begin = 0;     ///< when the request began: what is younger, it made
    std::string failure; ///< what an update threw; empty if none did
    bool isWhole = true; ///< whether nothing was passed over

private:
    std::vector<Story> stories_; // in the order in which objects were first decided on
    std::unordered_map<const Quorl::VObject*, std::size_t> places_;
};

/// A line for each update that failed.
std::vector<std::string> failuresOf(const Account& account);

std::string wordsOf(Row row);
std::string wordsOf(Story::End end);

/// Why an input did not lead to its source; empty if it did.
std::string wordsOf(InputStory::Fate fate);

} // namespace Zelm
