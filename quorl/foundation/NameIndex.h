#pragma once

#include <cstddef>
#include <functional>
#include <string_view>
#include <utility>
#include <vector>

namespace Tolmen
{

/// Finds entries that stand elsewhere by their names: a table that is quick to ask and keeps no
/// order. An `Entry` has its name as `first`, as those of a map do. Not owned.
template <class Entry>
class NameIndex
{
public:
    std::size_t size() const { return count_; }

    Entry* find(std::string_view name) const ///< null if there is none
    {
        if (places_.empty()) return nullptr;
        const std::size_t hash = std::hash<std::string_view>()(name);
        for (std::size_t at = hash & mask(); places_[at].entry; at = next(at))
            if (places_[at].hash == hash && places_[at].entry->first == name)
                return places_[at].entry;
        return nullptr;
    }

    /// \pre none of that name is there.
    void insert(Entry& entry)
    {
        if (4 * (count_ + 1) > 3 * places_.size()) grow();
        put({std::hash<std::string_view>()(entry.first), &entry});
        ++count_;
    }

    /// Does nothing if it is not there.
    void erase(const Entry& entry)
    {
        if (places_.empty()) return;
        std::size_t gap = std::hash<std::string_view>()(entry.first) & mask();
        while (places_[gap].entry && places_[gap].entry != &entry) gap = next(gap);
        if (!places_[gap].entry) return;
        // What stands behind the gap moves into it, unless that is ahead of where it belongs.
        for (std::size_t at = next(gap); places_[at].entry; at = next(at))
            if (distance(places_[at].hash & mask(), at) >= distance(gap, at))
                places_[std::exchange(gap, at)] = places_[at];
        places_[gap] = {};
        --count_;
    }

    void clear()
    {
        places_.clear();
        count_ = 0;
    }

private:
    struct Place
    {
        std::size_t hash = 0;
        Entry* entry = nullptr;
    };

    std::size_t mask() const { return places_.size() - 1; }
    std::size_t next(std::size_t at) const { return (at + 1) & mask(); }
    std::size_t distance(std::size_t from, std::size_t to) const { return (to - from) & mask(); }

    void put(const Place& place)
    {
        std::size_t at = place.hash & mask();
        while (places_[at].entry) at = next(at);
        places_[at] = place;
    }

    void grow()
    {
        std::vector<Place> before(places_.empty() ? kFirstSize : 2 * places_.size());
        before.swap(places_);
        for (const Place& place : before)
            if (place.entry) put(place);
    }

    // Sizes are powers of two, of which 3 in 4 are filled at most.
    static constexpr std::size_t kFirstSize = 8;

    std::vector<Place> places_;
    std::size_t count_ = 0;
};

} // namespace Tolmen
