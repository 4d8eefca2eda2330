#pragma once

#include <quorl/foundation/StrongPtr.h>

#include <cstdint>
#include <new>
#include <utility>
#include <vector>

namespace Tolmen
{

/// Puts one object into many strong handles: the counts are changed once for all of them, and once
/// for each run of handles that held the same. That is dropped in the end, so that nothing ends
/// while there are handles left to be put.
template <class B>
class ManyShares
{
public:
    using Handle = StrongPtr<B, B>;

    /// \param source alive.
    /// \param count of handles.
    ManyShares(const Handle& source, std::int32_t count) : given_(source.referer), left_(count)
    {
        given_->takeBoth(left_);
    }
    ~ManyShares()
    {
        drop({given_, left_});
        for (const Shares& former : former_) drop(former);
        drop(last_);
    }
    ManyShares(const ManyShares&) = delete;
    ManyShares& operator=(const ManyShares&) = delete;

    /// \pre not more often than for `count` handles.
    void put(Handle& handle)
    {
        --left_;
        dropLater(std::exchange(handle.referer, given_));
    }

    /// Puts the object into `handle`, and what that held into `next`.
    void push(Handle& handle, Handle& next)
    {
        --left_;
        dropLater(std::exchange(next.referer, std::exchange(handle.referer, given_)));
    }

private:
    struct Shares
    {
        Referer* referer = nullptr;
        std::int32_t count = 0;
    };

    void dropLater(Referer* referer)
    {
        if (!referer) return;
        if (referer != last_.referer) beginRun(referer);
        ++last_.count;
    }

    void beginRun(Referer* referer)
    {
        if (last_.count > 0) keep(last_);
        last_ = {referer, 0};
    }

    void keep(const Shares& shares) noexcept
    try
    {
        former_.push_back(shares);
    }
    catch (const std::bad_alloc&)
    {
        drop(shares);
    }

    /// The last of the shares goes the usual way, for it may be the last of all.
    static void drop(const Shares& shares)
    {
        if (shares.count == 0) return;
        if (shares.count > 1) dropSome(*shares.referer, shares.count - 1);
        Handle last;
        last.referer = shares.referer;
    }

    /// Of what is dead there are weak shares alone.
    static void dropSome(Referer& referer, std::int32_t count)
    {
        if (referer.isOwned())
            referer.dropBoth(count);
        else
            referer.weak.fetch_sub(count, std::memory_order_acq_rel);
    }

    Referer* const given_;
    std::int32_t left_;
    Shares last_;                // of the handles that were put last
    std::vector<Shares> former_; // of those before them; hardly ever any
};

} // namespace Tolmen
