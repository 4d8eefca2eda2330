#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>
#include <quorl/foundation/RefPtr.h>

#include <algorithm>
#include <cstdint>
#include <limits>

namespace Quorl
{

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

    /// What all executors of one chain share.
    class QUORL_API MaxRequestExecutor : public Tolmen::ReferenceBase<MaxRequestExecutor>
    {
    public:
        MaxRequestExecutor();
        ~MaxRequestExecutor() override;

        Reckoned MaxLevel; ///< the largest depth
        Reckoned Changes;  ///< how often an object's depth became another
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
    /// deepest, and how often it became another between the first and the last.
    struct Descents
    {
        bool areSeveral;
        std::int32_t first;
        std::int32_t beforeLast;
        std::int32_t last;
        std::int32_t deepest;
        std::int32_t changes;

        Descents from(std::int32_t level) const; ///< of levels that count from there
    };
    void descend(const RefPtr<MaxRequestExecutor>& chain, const Descents& descents);
};

inline RequestExecutor::Descents RequestExecutor::Descents::from(std::int32_t level) const
{
    return {areSeveral, first + level, beforeLast + level, last + level, deepest + level, changes};
}

inline void RequestExecutor::descend(const RefPtr<MaxRequestExecutor>& chain, std::int32_t level)
{
    descend(chain, {false, level, 0, level, level, 0});
}

inline void RequestExecutor::descend(const RefPtr<MaxRequestExecutor>& chain,
                                     const Descents& descents)
{
    if (!(Max == chain)) Max.quietly() = chain;
    Max->MaxLevel.value_ = std::max(Max->MaxLevel.value_, descents.deepest);
    const std::int64_t changes = std::int64_t{Max->Changes.value_} + descents.changes +
                                 (Level.value_ == descents.first ? 0 : 1);
    Max->Changes.value_ = static_cast<std::int32_t>(
        std::min<std::int64_t>(changes, std::numeric_limits<std::int32_t>::max()));
    PreviousLevel.value_ = descents.areSeveral ? descents.beforeLast : Level.value_;
    Level.value_ = descents.last;
}

} // namespace Quorl

namespace Tolmen
{
extern template class ReferenceBase<Quorl::RequestExecutor::MaxRequestExecutor>;
} // namespace Tolmen
