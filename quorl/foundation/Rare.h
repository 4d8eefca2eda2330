#pragma once

#include <cstddef>
#include <memory>
#include <utility>

namespace Tolmen
{

/// A container that has nothing in it as a rule. It takes one word until something is put in, where
/// those of the standard library take several each.
///
/// It is read like a constant `Table`, and changed by the operations below.
template <class Table>
class Rare
{
public:
    using value_type = typename Table::value_type;
    using const_iterator = typename Table::const_iterator;

    Rare() = default;
    Rare(const Rare& other) : table_(other.table_ ? new Table(*other.table_) : nullptr) {}
    Rare& operator=(const Rare& other) { return *this = other.value(); }
    Rare& operator=(Table other)
    {
        made().swap(other);
        return *this; // what was held before ends with `other`, when this is whole
    }
    ~Rare() = default;

    bool empty() const { return !table_ || table_->empty(); }
    std::size_t size() const { return table_ ? table_->size() : 0; }

    // Without a table both ends are iterators of none, which are equal.
    const_iterator begin() const { return table_ ? table_->cbegin() : const_iterator(); }
    const_iterator end() const { return table_ ? table_->cend() : const_iterator(); }

    template <class Key>
    const_iterator find(const Key& key) const
    {
        return table_ ? std::as_const(*table_).find(key) : const_iterator();
    }
    template <class Key>
    const_iterator upper_bound(const Key& key) const
    {
        return table_ ? std::as_const(*table_).upper_bound(key) : const_iterator();
    }
    template <class Key>
    bool contains(const Key& key) const
    {
        return table_ && table_->contains(key);
    }
    template <class Key>
    std::size_t count(const Key& key) const
    {
        return table_ ? table_->count(key) : 0;
    }
    decltype(auto) front() const { return std::as_const(*table_).front(); } ///< \pre not empty
    decltype(auto) back() const { return std::as_const(*table_).back(); }   ///< \pre not empty

    template <class... Arguments>
    decltype(auto) insert(Arguments&&... arguments)
    {
        return made().insert(std::forward<Arguments>(arguments)...);
    }
    template <class... Arguments>
    decltype(auto) emplace(Arguments&&... arguments)
    {
        return made().emplace(std::forward<Arguments>(arguments)...);
    }
    template <class... Arguments>
    decltype(auto) emplace_back(Arguments&&... arguments)
    {
        return made().emplace_back(std::forward<Arguments>(arguments)...);
    }
    void push_back(const value_type& value) { made().push_back(value); }
    template <class Key>
    decltype(auto) operator[](const Key& key)
    {
        return made()[key];
    }
    template <class What>
    decltype(auto) erase(const What& what)
    {
        return made().erase(what);
    }
    void clear()
    {
        const auto former = std::exchange(table_, nullptr); // ends when this is empty
    }

    /// The container itself, made if it is missing.
    Table& made()
    {
        if (!table_) table_ = std::make_unique<Table>();
        return *table_;
    }

private:
    Table value() const { return table_ ? *table_ : Table(); }

    std::unique_ptr<Table> table_; // null until something was put in
};

} // namespace Tolmen
