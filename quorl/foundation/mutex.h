#pragma once

#include <quorl/foundation/Export.h>

#include <atomic>
#include <cstdint>

namespace Tolmen
{

/// A mutual exclusion lock that can be taken through a constant reference, by
/// `std::lock_guard<const mutex>`. Recursive: a visitor that is called under a container's lock may
/// ask that container.
///
/// Two of them stand in each object, and few of those ever wait: hence of its own, in 8 bytes,
/// where a `std::recursive_mutex` of common C libraries takes 40 and more.
class TOLMEN_API mutex
{
public:
    mutex() = default;
    ~mutex() = default;
    mutex(const mutex&) = delete;
    mutex& operator=(const mutex&) = delete;

    void lock() const;
    void unlock() const; ///< \pre this thread has it

private:
    mutable std::atomic<std::uint32_t> owner_{0}; // a number of the thread; 0 if it is free
    mutable std::uint32_t depth_ = 0;             // how often the owner has it beyond the first
};

} // namespace Tolmen
