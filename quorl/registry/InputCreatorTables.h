#pragma once

#include <quorl/Forward.h>
#include <quorl/foundation/RefPtr.h>
#include <quorl/foundation/SteadyWalk.h>
#include <quorl/foundation/TypeInfo.h>
#include <quorl/registry/VCreationPreferences.h>

#include <cstdint>
#include <map>

/// The two tables of input creators. They meet in the readable name of a type (`Tolmen::Typename`).
///
/// Neither is ever destroyed: creators that the registry owns end in its clean-up, and withdraw.
namespace Quorl
{

/// Entries in the order of their arrival, by ascending numbers, so that a walk that remembers a
/// number goes on behind it, whatever was added and removed meanwhile.
template <class Entry>
class ArrivalList
{
public:
    void append(const Entry& entry) { entries_.emplace(++last_, entry); }

    /// Removes the first entry of which `matches` says so. \return whether there was one.
    template <class Matches>
    bool removeFirst(Matches&& matches)
    {
        for (auto entry = entries_.begin(); entry != entries_.end(); ++entry)
            if (matches(entry->second))
            {
                entries_.erase(entry);
                return true;
            }
        return false;
    }

    /// Shows copies of the entries, those that arrive meanwhile included, until `show` answers
    /// false. \return whether the end was reached.
    template <class Show>
    bool visit(Show&& show) const
    {
        return Tolmen::walkSteadily(entries_, show);
    }

    void remove(std::uint64_t number) { entries_.erase(number); }

private:
    std::uint64_t last_ = 0;
    std::map<std::uint64_t, Entry> entries_;
};

/// What the cache says of a creator.
struct InputCreatorLoader
{
    string provider; ///< its name in the domain of creators
    RefPtr<VCreationPreferences> preferences;
};

using RegisteredCreators = ArrivalList<WeakPtr<VInputCreatorBase>>;
using OfflineCreators = ArrivalList<InputCreatorLoader>;

std::map<Tolmen::TypeInfo, RegisteredCreators>& InputCreatorRegistry();
std::map<string, OfflineCreators>& theInputCreatorLoader();

} // namespace Quorl
