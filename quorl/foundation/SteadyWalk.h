#pragma once

namespace Tolmen
{

/// Shows copies of the entries of an ordered map until `show` answers false. Entries may come and
/// go meanwhile; those that come behind the one that is shown are reached.
/// \return whether the end was reached.
template <class Map, class Show>
bool walkSteadily(const Map& map, Show&& show)
{
    for (auto entry = map.begin(); entry != map.end();)
    {
        const typename Map::key_type key = entry->first;
        const typename Map::mapped_type value = entry->second;
        if (!show(key, value)) return false;
        entry = map.upper_bound(key);
    }
    return true;
}

/// The same for the members of an ordered set.
template <class Set, class Show>
bool walkMembersSteadily(const Set& set, Show&& show)
{
    for (auto place = set.begin(); place != set.end();)
    {
        const typename Set::value_type member = *place;
        if (!show(member)) return false;
        place = set.upper_bound(member);
    }
    return true;
}

} // namespace Tolmen
