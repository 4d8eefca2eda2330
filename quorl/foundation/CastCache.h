#pragma once

#include <quorl/foundation/Export.h>

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <utility>

namespace Tolmen
{

template <class T>
class ReferenceBase;

/// How often code has left the process. What was learned about classes before may be wrong since.
extern TOLMEN_API std::atomic<std::uint32_t> theUnloadCount;

/// Dynamic casts from the root `B` to `T`, remembered. Where the `T` of an object is, and whether
/// there is one, is the same for all objects with one virtual table at their root, so that one cast
/// answers for all of them. An object that is being built or destroyed has other tables meanwhile,
/// hence other answers.
///
/// Each module has caches of its own. All of them are void as soon as a module was unloaded, whose
/// tables may give way to others at the same addresses; a host that unloads code past `VModule` has
/// to raise `theUnloadCount`.
///
/// Threads: an answer is one word, so it is whole wherever it is read.
template <class T, class B>
class CastCache
{
public:
    /// \return what `dynamic_cast<T*>(object)` does. \pre `object` is not null.
    static T* cast(ReferenceBase<B>* object)
    {
        const std::uintptr_t table = *reinterpret_cast<const VirtualTable*>(object);
        const std::uint32_t unloads = theUnloadCount.load(std::memory_order_relaxed);
        const bool areTrue = unloads == unloadsBefore_.load(std::memory_order_acquire);
        const std::uint64_t answer = answers_[place(table)].load(std::memory_order_relaxed);
        if (areTrue && answer >> kOffsetBits == table) [[likely]]
            return at(object, static_cast<std::int16_t>(answer));
        return castAndLearn(object, table, unloads);
    }

private:
#if defined(__GNUC__)
    using VirtualTable [[gnu::may_alias]] = std::uintptr_t;
#else
    using VirtualTable = std::uintptr_t;
#endif

    // An answer is the address of the table, and below it the distance from the root to the `T`.
    static constexpr int kOffsetBits = 16;
    static constexpr std::int16_t kNone = INT16_MIN; // there is no `T`
    static constexpr std::size_t kAnswers = 32;

    static std::size_t place(std::uintptr_t table)
    {
        return (table >> 4 ^ table >> 9) % kAnswers; // tables are aligned, and some 100 bytes long
    }

    static T* at(ReferenceBase<B>* object, std::int16_t offset)
    {
        if (offset == kNone) return nullptr;
        return reinterpret_cast<T*>(reinterpret_cast<std::byte*>(object) + offset);
    }

    [[gnu::noinline]] static T* castAndLearn(ReferenceBase<B>* object, std::uintptr_t table,
                                             std::uint32_t unloads)
    {
        T* const found = dynamic_cast<T*>(object);
        if (unloadsBefore_.load(std::memory_order_relaxed) != unloads)
        {
            for (auto& answer : answers_) answer.store(0, std::memory_order_relaxed);
            unloadsBefore_.store(unloads, std::memory_order_release); // with none that is void
        }
        const std::ptrdiff_t offset =
            found ? reinterpret_cast<std::byte*>(found) - reinterpret_cast<std::byte*>(object)
                  : kNone;
        const bool isTold = std::in_range<std::int16_t>(offset) && (offset == kNone) == !found;
        if (isTold && table >> (64 - kOffsetBits) == 0)
            answers_[place(table)].store(std::uint64_t{table} << kOffsetBits |
                                             static_cast<std::uint16_t>(offset),
                                         std::memory_order_relaxed);
        return found;
    }

    [[gnu::visibility("hidden")]] static std::array<std::atomic<std::uint64_t>, kAnswers> answers_;
    [[gnu::visibility("hidden")]] static std::atomic<std::uint32_t> unloadsBefore_;
};

template <class T, class B>
constinit std::array<std::atomic<std::uint64_t>, CastCache<T, B>::kAnswers>
    CastCache<T, B>::answers_{};

template <class T, class B>
constinit std::atomic<std::uint32_t> CastCache<T, B>::unloadsBefore_ = 0;

} // namespace Tolmen
