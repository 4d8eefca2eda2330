#pragma once

#include <quorl/foundation/Export.h>

#include <atomic>
#include <bit>
#include <cstdint>

namespace Tolmen
{

/// The count block that all handles to one object share. It outlives the object for as long as a
/// handle holds it.
///
/// | `strong`                       | state of the object                            | alive |
/// |--------------------------------|------------------------------------------------|-------|
/// | 0                              | born: never owned (for good on stack, static)  | yes   |
/// | 1 and above                    | owned by that many strong handles              | yes   |
/// | 0x35000000, a few more or less | in extreme unction: the last owner is gone     | yes   |
/// | -1                             | dead                                           | no    |
///
/// Threads: the counters are atomic, the test before a change is a separate read. `object` is
/// plain: it is written at birth and, by the one thread that ends the life, at death.
struct alignas(8) Referer
{
    std::atomic<std::int32_t> strong{0}; ///< strong handles, and the state of life
    std::atomic<std::int32_t> weak{0};   ///< handles of any kind, and one for the object itself
    void* object = nullptr; ///< the `ReferenceBase` part; poison after a handle-driven death

    /// Takes shares of each kind. \pre `strong` is not negative.
    void takeBoth(std::int32_t shares = 1);

    /// Drops shares of each kind. \pre there are as many. \return what `strong` was before.
    std::int32_t dropBoth(std::int32_t shares = 1);

    /// Relaxed: who asks either holds a share or has excluded the death of the object by other
    /// means, so there is nothing to be ordered.
    bool isAlive() const
    {
        return object != nullptr && strong.load(std::memory_order_relaxed) >= 0;
    }

    /// Whether a strong handle has the object. One in its extreme unction counts as owned.
    bool isOwned() const { return strong.load(std::memory_order_relaxed) > 0; }

    /// Whether the object lives, or began its end, without ever having been owned.
    bool isUnowned() const { return strong.load(std::memory_order_relaxed) == 0; }
};

#if defined(__GNUC__)

// The counters are neighbours, and neither leaves its range here, so that one addition changes both
// for the price of one. The language knows no such thing, but the compilers and processors do.
namespace Detail
{
using BothCounts [[gnu::may_alias]] = std::uint64_t;

constexpr BothCounts sharesOfEach(std::int32_t shares)
{
    return static_cast<BothCounts>(shares) * 0x1'0000'0001;
}
} // namespace Detail

inline void Referer::takeBoth(std::int32_t shares)
{
    auto* const both = reinterpret_cast<Detail::BothCounts*>(&strong);
    __atomic_fetch_add(both, Detail::sharesOfEach(shares), __ATOMIC_RELAXED);
}

inline std::int32_t Referer::dropBoth(std::int32_t shares)
{
    auto* const both = reinterpret_cast<Detail::BothCounts*>(&strong);
    const Detail::BothCounts before =
        __atomic_fetch_sub(both, Detail::sharesOfEach(shares), __ATOMIC_ACQ_REL);
    return static_cast<std::int32_t>(std::endian::native == std::endian::little ? before
                                                                                : before >> 32);
}

#else

inline void Referer::takeBoth(std::int32_t shares)
{
    weak.fetch_add(shares, std::memory_order_relaxed);
    strong.fetch_add(shares, std::memory_order_relaxed);
}

inline std::int32_t Referer::dropBoth(std::int32_t shares)
{
    weak.fetch_sub(shares, std::memory_order_acq_rel);
    return strong.fetch_sub(shares, std::memory_order_acq_rel);
}

#endif

inline constexpr std::int32_t kDead = -1;
inline constexpr std::int32_t kExtremeUnction = 0x35000000; ///< so large that no handle gets to 1

/// What `Referer::object` reads after a handle-driven death: a stale access faults at an address
/// that can be recognised.
inline void* poisonedObject()
{
    return reinterpret_cast<void*>(std::uintptr_t{0x1234}); // NOLINT(performance-no-int-to-ptr)
}

extern TOLMEN_API std::int32_t RefererObjects;         ///< count blocks alive
extern TOLMEN_API std::int32_t CheckRefcountedObjects; ///< `ReferenceBase` objects alive

/// Changes a tally by `step` and gives what it was. A plain read-modify-write: two threads can lose
/// a step. Relaxed accesses keep that free of data races, at the price of plain ones. Behind the
/// largest number comes the smallest.
inline std::int32_t changeTally(std::int32_t& tally, std::int32_t step)
{
    const std::atomic_ref<std::int32_t> shared(tally);
    const std::int32_t before = shared.load(std::memory_order_relaxed);
    const auto sum = static_cast<std::uint32_t>(before) + static_cast<std::uint32_t>(step);
    shared.store(static_cast<std::int32_t>(sum), std::memory_order_relaxed);
    return before;
}

/// Ends the process at once with a memory fault: somebody used what a dead handle pointed to.
[[noreturn]] TOLMEN_API void faultOnDeadHandle() noexcept;

} // namespace Tolmen
