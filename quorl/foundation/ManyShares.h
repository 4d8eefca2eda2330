#pragma once

#include <quorl/foundation/StrongPtr.h>

#include <cstdint>
#include <utility>

namespace Tolmen
{

/// Puts one object into many strong handles, and drops what they held: the counts are changed once
/// for all of them, and once for each run of handles that held the same.
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
        drop(given_, left_);
        drop(dropped_, droppedCount_);
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
    void dropLater(Referer* referer)
    {
        if (!referer) return;
        if (referer != dropped_)
        {
            drop(dropped_, droppedCount_);
            dropped_ = referer;
            droppedCount_ = 0;
        }
        ++droppedCount_;
    }

    /// The last of the shares goes the usual way, for it may be the last of all.
    static void drop(Referer* referer, std::int32_t count)
    {
        if (count == 0) return;
        if (count > 1) dropSome(*referer, count - 1);
        Handle last;
        last.referer = referer;
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
    Referer* dropped_ = nullptr;
    std::int32_t droppedCount_ = 0;
};

} // namespace Tolmen
