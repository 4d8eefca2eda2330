#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <vector>

namespace Tolmen
{

/// Finds what stands elsewhere, by a number or an address: a table that is quick to ask and keeps
/// no order. Entries are never removed. What is entered must differ from `Value()`, which means
/// that nothing was found.
template <class Key, class Value>
    requires(std::is_integral_v<Key> || std::is_pointer_v<Key>)
class FlatIndex
{
public:
    /// \return `Value()` if there is none.
    Value find(Key key) const { return entries_.empty() ? Value() : entries_[place(key)].value; }

    /// \pre the key has no entry.
    void insert(Key key, Value value)
    {
        if (2 * (count_ + 1) > entries_.size()) grow();
        entries_[place(key)] = {key, value};
        ++count_;
    }

private:
    struct Entry
    {
        Key key{};
        Value value{};
    };

    /// Where the key stands, or where it is to be put.
    std::size_t place(Key key) const
    {
        const std::size_t mask = entries_.size() - 1;
        std::size_t at = hash(key) & mask;
        while (entries_[at].value != Value() && entries_[at].key != key) at = (at + 1) & mask;
        return at;
    }

    static std::size_t hash(Key key)
    {
        std::uint64_t bits = 0;
        if constexpr (std::is_pointer_v<Key>)
            bits = reinterpret_cast<std::uintptr_t>(key);
        else
            bits = static_cast<std::uint64_t>(key);
        return static_cast<std::size_t>(bits * 0x9E3779B97F4A7C15 >> 32); // Fibonacci hashing
    }

    void grow()
    {
        std::vector<Entry> before(entries_.empty() ? kFirstSize : 2 * entries_.size());
        before.swap(entries_);
        for (const Entry& entry : before)
            if (entry.value != Value()) entries_[place(entry.key)] = entry;
    }

    static constexpr std::size_t kFirstSize = 8; // sizes are powers of two, filled by half at most

    std::vector<Entry> entries_;
    std::size_t count_ = 0;
};

} // namespace Tolmen
