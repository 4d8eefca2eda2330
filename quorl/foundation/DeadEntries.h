#pragma once

#include <algorithm>
#include <cstddef>

namespace Tolmen
{

/// Takes the dead out of a table of weak handles now and then, so that it is never much larger than
/// twice what lives in it, at a cost that does not depend on its size. Walks of the table pass over
/// the dead and must not lose their place: none are taken out while one is under way.
class DeadEntries
{
public:
    /// While this lives, a walk is under way.
    class Walk
    {
    public:
        explicit Walk(DeadEntries& entries) : entries_(entries) { ++entries_.walks_; }
        Walk(const Walk&) = delete;
        Walk& operator=(const Walk&) = delete;
        ~Walk() { --entries_.walks_; }

    private:
        DeadEntries& entries_;
    };

    /// To be called ahead of an addition.
    template <class Table, class IsDead>
    void takeOut(Table& table, IsDead&& isDead)
    {
        if (walks_ > 0 || table.size() < limit_) return;
        erase_if(table, isDead); // of the container's namespace
        limit_ = std::max(kLeast, 2 * table.size());
    }

private:
    static constexpr std::size_t kLeast = 16;

    int walks_ = 0;
    std::size_t limit_ = kLeast; // the size of the table at which the dead are looked for
};

} // namespace Tolmen
