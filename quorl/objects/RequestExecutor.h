#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>
#include <quorl/foundation/Rare.h>
#include <quorl/foundation/RefPtr.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <map>
#include <memory>
#include <utility>

namespace Quorl
{

class LevelCourse;
class LevelDebt;

/// The depth of an object in the evaluation that passed last. Deliberate: to copy and to assign
/// does not give the same depth but the next one, since it is handed down from object to object.
class QUORL_API RequestExecutor
{
public:
    /// A number that walks account for late: whoever reads or writes it has them do that first.
    class QUORL_API Reckoned
    {
    public:
        Reckoned(std::int32_t value = 0) : value_(value) {}
        Reckoned(const Reckoned& other) : value_(other) {}
        ~Reckoned() = default;

        Reckoned& operator=(const Reckoned& other);
        Reckoned& operator=(std::int32_t value);
        operator std::int32_t() const;

    private:
        friend class RequestExecutor;

        std::int32_t value_;
    };

    /// The same for a sum, to which walks add. What they add may take them too long to work out:
    /// then that is done, too, when somebody reads it.
    ///
    /// Threads: several may read that of an evaluation that has ended.
    class QUORL_API ReckonedSum
    {
    public:
        ReckonedSum();
        ReckonedSum(const ReckonedSum& other);
        ~ReckonedSum();

        ReckonedSum& operator=(const ReckonedSum& other);
        ReckonedSum& operator=(std::int32_t value);
        operator std::int32_t() const;

    private:
        friend class RequestExecutor;
        friend class Repeats;
        friend class RequestPlan;

        using Places = std::pair<std::uint32_t, std::uint32_t>; // of a course: first, behind last

        void add(std::int64_t more) const;
        void owe(const std::shared_ptr<const LevelCourse>& course, Places places);
        LevelDebt& debtOf(const std::shared_ptr<const LevelCourse>& course);
        void settleOne() const;

        mutable std::int32_t value_ = 0; // not more than the largest number
        using Debts = std::multimap<std::size_t, std::unique_ptr<LevelDebt>>; // by fingerprints
        mutable Tolmen::Rare<Debts> debts_;
    };

    /// What all executors of one chain share.
    class QUORL_API MaxRequestExecutor final : public Tolmen::ReferenceBase<MaxRequestExecutor>
    {
    public:
        MaxRequestExecutor();
        ~MaxRequestExecutor() override;

        Reckoned MaxLevel;   ///< the largest depth
        ReckonedSum Changes; ///< how often an object's depth became another
    };

    /// The handle of a chain, by which walks account, too.
    class QUORL_API Chain : public RefPtr<MaxRequestExecutor>
    {
    public:
        using RefPtr<MaxRequestExecutor>::StrongPtr;
        Chain(const RefPtr<MaxRequestExecutor>& chain) : RefPtr<MaxRequestExecutor>(chain) {}
        Chain(const Chain&) = default;
        ~Chain() = default;

        Chain& operator=(const Chain& other) { return *this = other.value(); }
        Chain& operator=(const RefPtr<MaxRequestExecutor>& other);

    private:
        friend class RequestExecutor;

        const RefPtr<MaxRequestExecutor>& value() const { return *this; }
        RefPtr<MaxRequestExecutor>& quietly() { return *this; }
    };

    RequestExecutor();
    RequestExecutor(const RequestExecutor& caller);
    RequestExecutor& operator=(const RequestExecutor& caller);
    ~RequestExecutor();

    void reset(); ///< to depth 0, in a chain of its own

    Reckoned Level;
    Reckoned PreviousLevel{-1};
    Chain Max;

private:
    friend class Repeats;
    friend class RequestPlan;

    // For walks: the numbers as far as they have been accounted for.

    std::int32_t knownLevel() const { return Level.value_; }

    /// As the assignment of an executor that is one level above.
    void descend(const RefPtr<MaxRequestExecutor>& chain, std::int32_t level);

    /// As several of them, of which the levels are known: of the first, the last two and the
    /// deepest. How often it becomes another between them is not counted.
    struct Descents
    {
        bool areSeveral;
        std::int32_t first;
        std::int32_t beforeLast;
        std::int32_t last;
        std::int32_t deepest;

        Descents from(std::int32_t level) const; ///< of levels that count from there
    };
    void descend(const RefPtr<MaxRequestExecutor>& chain, const Descents& descents);
};

inline RequestExecutor::Descents RequestExecutor::Descents::from(std::int32_t level) const
{
    return {areSeveral, first + level, beforeLast + level, last + level, deepest + level};
}

inline void RequestExecutor::ReckonedSum::add(std::int64_t more) const
{
    constexpr std::int64_t kMost = std::numeric_limits<std::int32_t>::max();
    value_ = static_cast<std::int32_t>(std::min(value_ + more, kMost));
}

inline void RequestExecutor::descend(const RefPtr<MaxRequestExecutor>& chain, std::int32_t level)
{
    descend(chain, {false, level, 0, level, level});
}

inline void RequestExecutor::descend(const RefPtr<MaxRequestExecutor>& chain,
                                     const Descents& descents)
{
    if (!(Max == chain)) Max.quietly() = chain;
    Max->MaxLevel.value_ = std::max(Max->MaxLevel.value_, descents.deepest);
    if (Level.value_ != descents.first) Max->Changes.add(1);
    PreviousLevel.value_ = descents.areSeveral ? descents.beforeLast : Level.value_;
    Level.value_ = descents.last;
}

} // namespace Quorl

namespace Tolmen
{
extern template class ReferenceBase<Quorl::RequestExecutor::MaxRequestExecutor>;
} // namespace Tolmen
