#pragma once

#include <quorl/foundation/Watch.h>

#include <cstddef>
#include <initializer_list>
#include <type_traits>
#include <utility>

namespace Tolmen
{

/// A field that belongs to the shape of a network. It is read like a constant `T`, and to assign to
/// it changes the shape; nobody gets a reference by which it could be changed otherwise.
template <class T>
class Watched
{
public:
    Watched() = default;
    explicit Watched(const T& value) : value_(value) {}
    Watched(const Watched&) = default;
    ~Watched() = default;

    Watched& operator=(const Watched& other) { return *this = other.value_; }

    template <class Other>
    Watched& operator=(Other&& other)
    {
        const Watch::ShapeChange change;
        value_ = std::forward<Other>(other);
        return *this;
    }

    const T& value() const { return value_; }
    operator const T&() const { return value_; }

    // As handles have it

    auto* operator->() const { return value_.operator->(); }
    auto& operator*() const { return *value_; }
    auto* rawptr() const { return value_.rawptr(); }
    operator void*() const { return value_; }
    bool operator==(const Watched& other) const { return value_ == other.value_; }
    template <class Other>
    bool operator==(const Other& other) const
    {
        return value_ == other;
    }

    /// For changes that leave the shape as it is.
    T& quietly() { return value_; }

private:
    T value_;
};

/// The same for a number or a flag.
template <class T>
    requires std::is_arithmetic_v<T>
class Watched<T>
{
public:
    constexpr Watched(T value = T()) : value_(value) {}
    Watched(const Watched&) = default;
    ~Watched() = default;

    Watched& operator=(const Watched& other) { return *this = other.value_; }
    Watched& operator=(T value)
    {
        Watch::shapeChanges();
        value_ = value;
        return *this;
    }
    operator T() const { return value_; }

private:
    T value_;
};

/// A set that belongs to the shape of a network. It is read like a constant `Table`, and changed by
/// the operations below.
template <class Table>
class WatchedTable
{
public:
    using key_type = typename Table::key_type;
    using value_type = typename Table::value_type;
    using const_iterator = typename Table::const_iterator;
    using iterator = const_iterator;
    using node_type = typename Table::node_type;

    WatchedTable() = default;
    WatchedTable(const WatchedTable&) = default;
    ~WatchedTable() = default;

    WatchedTable& operator=(const WatchedTable& other) { return *this = other.table_; }
    WatchedTable& operator=(const Table& other)
    {
        const Watch::ShapeChange change;
        table_ = other;
        return *this;
    }

    operator const Table&() const { return table_; }
    bool empty() const { return table_.empty(); }
    std::size_t size() const { return table_.size(); }
    const_iterator begin() const { return table_.begin(); }
    const_iterator end() const { return table_.end(); }

    template <class Key>
    const_iterator find(const Key& key) const
    {
        return table_.find(key);
    }
    template <class Key>
    const_iterator upper_bound(const Key& key) const
    {
        return table_.upper_bound(key);
    }
    template <class Key>
    bool contains(const Key& key) const
    {
        return table_.contains(key);
    }
    template <class Key>
    std::size_t count(const Key& key) const
    {
        return table_.count(key);
    }

    template <class... Arguments>
    auto insert(Arguments&&... arguments)
    {
        const Watch::ShapeChange change;
        return table_.insert(std::forward<Arguments>(arguments)...);
    }
    auto insert(std::initializer_list<value_type> values)
    {
        const Watch::ShapeChange change;
        return table_.insert(values);
    }
    template <class... Arguments>
    auto emplace(Arguments&&... arguments)
    {
        const Watch::ShapeChange change;
        return table_.emplace(std::forward<Arguments>(arguments)...);
    }
    template <class... Arguments>
    auto erase(Arguments&&... arguments)
    {
        const Watch::ShapeChange change;
        return table_.erase(std::forward<Arguments>(arguments)...);
    }
    /// Puts a value in the place of the one that is equal to it, which has to be there. Nothing is
    /// made, so nothing can fail.
    /// \return what was there, so that the caller lets it end when all else is done.
    value_type replace(const_iterator place, const value_type& value)
    {
        const Watch::ShapeChange change;
        node_type entry = table_.extract(place);
        value_type former = std::exchange(entry.value(), value);
        table_.insert(std::move(entry));
        return former;
    }
    /// \return what was there, so that the caller lets it end when all else is done.
    template <class What>
    node_type extract(const What& what)
    {
        const Watch::ShapeChange change;
        return table_.extract(what);
    }
    void clear()
    {
        const Watch::ShapeChange change;
        table_.clear();
    }

    bool operator==(const WatchedTable& other) const { return table_ == other.table_; }
    bool operator==(const Table& other) const { return table_ == other; }

private:
    Table table_;
};

} // namespace Tolmen
