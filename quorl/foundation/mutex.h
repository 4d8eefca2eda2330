#pragma once

#include <quorl/foundation/Export.h>
#include <quorl/foundation/Forward.h>

#include <mutex>

namespace Tolmen
{

/// A mutual exclusion lock that can be taken through a constant reference, by
/// `std::lock_guard<const mutex>`. Recursive: a visitor that is called under a container's lock may
/// ask that container.
class TOLMEN_API mutex
{
public:
    mutex() = default;
    ~mutex() = default;
    mutex(const mutex&) = delete;
    mutex& operator=(const mutex&) = delete;

    void lock() const { lock_.lock(); }
    void unlock() const { lock_.unlock(); }

private:
    mutable std::recursive_mutex lock_;
};

} // namespace Tolmen
