#pragma once

#include <quorl/foundation/Watch.h>

#include <concepts>
#include <type_traits>
#include <utility>

namespace Tolmen
{

/// A field that belongs to the shape of a network: it is used like a plain `T`, and to assign to it
/// changes the shape. It must not be moved from.
template <class T>
class Watched : public T
{
public:
    using T::T;
    Watched() = default;
    Watched(const T& value) : T(value) {}
    Watched(const Watched&) = default;
    ~Watched() = default;

    Watched& operator=(const Watched& other) { return *this = other.value(); }

    template <class Other>
    Watched& operator=(Other&& other)
    {
        const Watch::ShapeChange change;
        quietly() = std::forward<Other>(other);
        return *this;
    }

    /// For changes that leave the shape as it is.
    T& quietly() { return *this; }
    const T& value() const { return *this; }
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

/// A set or map that belongs to the shape of a network.
template <class Table>
class WatchedTable : public Table
{
public:
    using Table::Table;

    template <class... Arguments>
    auto insert(Arguments&&... arguments)
    {
        const Watch::ShapeChange change;
        return Table::insert(std::forward<Arguments>(arguments)...);
    }
    template <class... Arguments>
    auto emplace(Arguments&&... arguments)
    {
        const Watch::ShapeChange change;
        return Table::emplace(std::forward<Arguments>(arguments)...);
    }
    template <class... Arguments>
    auto erase(Arguments&&... arguments)
    {
        const Watch::ShapeChange change;
        return Table::erase(std::forward<Arguments>(arguments)...);
    }
    void clear()
    {
        const Watch::ShapeChange change;
        Table::clear();
    }
    WatchedTable& operator=(const Table& other)
    {
        const Watch::ShapeChange change;
        Table::operator=(other);
        return *this;
    }
    template <class... Any>
    void extract(Any&&...) = delete;
    template <class Other>
    void merge(Other&&) = delete;
    template <class Other>
    void swap(Other&) = delete;
};

} // namespace Tolmen
