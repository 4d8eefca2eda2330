#pragma once

namespace Tolmen
{

/// The handle that a map of handles has for `key`; null if it has none.
template <class Map, class Key>
typename Map::mapped_type findOrNull(const Map& map, const Key& key)
{
    const auto entry = map.find(key);
    return entry == map.end() ? typename Map::mapped_type() : entry->second;
}

} // namespace Tolmen
