#pragma once

#include <utility>

/// Changes of tables whose contents may do anything when they end: ask the table, enter something,
/// end it. So whatever ends does so when the table is whole, and nobody comes back to it.
namespace Tolmen
{

/// Enters a value in the place of the one that is there.
template <class Map>
void enterSteadily(Map& map, const typename Map::key_type& key, typename Map::mapped_type value)
{
    std::swap(map[key], value);
}

/// Empties a container whose contents may enter others while they end.
template <class Container>
void emptySteadily(Container& container)
{
    while (!container.empty()) const Container ending = std::exchange(container, Container());
}

/// Lets go of what a pointer owns, and of what comes into its place meanwhile.
template <class Pointer>
void endSteadily(Pointer& owned)
{
    while (owned) const Pointer ending = std::exchange(owned, nullptr);
}

} // namespace Tolmen
