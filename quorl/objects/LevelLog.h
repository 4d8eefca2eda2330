#pragma once

#include <quorl/Export.h>

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <vector>

namespace Quorl
{

/// The depths at which an evaluation reached objects, which are told by their numbers. A walk notes
/// each step, and the table is hardly ever asked for: it is made then, of what was noted since.
///
/// Where memory runs out, what was noted stays noted, once.
///
/// Threads: several may ask for the table of an evaluation that has ended.
class QUORL_API LevelLog
{
public:
    /// How an object was reached. Levels count from the object where the evaluation started, which
    /// is not recorded itself.
    struct Level
    {
        std::int32_t MinLevel = 0;
        std::int32_t MaxLevel = 0;
        std::int32_t Count = 0;     ///< how often; not more than the largest number
        std::int32_t MinCaller = 0; ///< the object from which `MinLevel` was first reached
        std::int32_t MaxCaller = 0; ///< the object from which `MaxLevel` was first reached

        bool operator==(const Level& other) const = default;
    };
    struct Record
    {
        std::int32_t object;
        Level level;
    };
    using Records = std::vector<Record>;
    using Table = std::map<std::int32_t, Level>;

    LevelLog();
    ~LevelLog();

    /// Notes one visit of an object, or many, of which the bounds and their callers are known.
    void add(std::int32_t object, const Level& visits)
    {
        if (records_.size() >= most_) enterAll();
        records_.push_back({object, visits});
    }

    /// Makes room: so many visits, or sums of them, are noted next without a failure.
    void reserve(std::size_t visits);

    /// Notes a part of an evaluation that is known.
    struct Part
    {
        std::shared_ptr<const Records> records;
        std::size_t begin; ///< in `records`
        std::size_t end;
        std::int32_t deeper; ///< than those of `records` are the levels of the part
    };
    void add(const Part& part);

    /// By numbers, ascending. What is noted later shows when this is asked again.
    const Table& table() const;

private:
    struct PlacedPart : Part
    {
        std::size_t place; // the number of records ahead of it
    };

    void enterAll() const;
    void enterUpTo(std::size_t place) const;
    void enter(const Record& record, std::int32_t deeper) const;

    // In the order of the evaluation, which decides whose caller stays

    mutable Records records_;
    mutable std::size_t entered_ = 0;       // of them, where memory has run out meanwhile
    mutable std::vector<PlacedPart> parts_; // the same: what has been entered of one is left out
    mutable std::size_t most_;              // records that wait
    mutable Table table_;
    mutable std::mutex mutex_;
};

} // namespace Quorl
