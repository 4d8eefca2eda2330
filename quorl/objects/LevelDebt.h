#pragma once

#include <quorl/objects/LevelCourse.h>

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <utility>

namespace Quorl
{

/// How often a course, or parts of it, were walked: what they come to is not worked out yet.
class LevelDebt
{
public:
    using Course = std::shared_ptr<const LevelCourse>;
    using Places = std::pair<LevelCourse::Place, LevelCourse::Place>; ///< first, behind last

    explicit LevelDebt(const Course& course);
    ~LevelDebt();
    LevelDebt(const LevelDebt&) = delete;
    LevelDebt& operator=(const LevelDebt&) = delete;

    /// Of all debts of the process: what memory they take.
    static std::size_t sizeOfAll() { return theSize.load(std::memory_order_relaxed); }

    bool isOf(const Course& course) const { return course_ == course || *course_ == *course; }
    void add(const Places& places) { ++times_[places]; }

    /// \return how many changes it comes to on top of those that are known, or at least as many as
    /// are missing to the largest number.
    std::int64_t changes(std::int64_t known) const;

private:
    static std::atomic<std::size_t> theSize;

    const Course course_;
    std::map<Places, std::int64_t> times_;
};

} // namespace Quorl
