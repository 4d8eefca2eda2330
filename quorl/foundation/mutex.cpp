#include <quorl/foundation/mutex.h>

namespace Tolmen
{
namespace
{

constexpr std::uint32_t kFree = 0;

constinit std::atomic<std::uint32_t> theThreadCount{0};

#if defined(__GNUC__)
[[gnu::tls_model("initial-exec")]] // a few bytes, so that a library loaded late has them as well
#endif
constinit thread_local std::uint32_t theThread = kFree;

/// From 1, given to threads as they come by, and to none twice.
std::uint32_t thisThread()
{
    if (theThread == kFree) theThread = theThreadCount.fetch_add(1, std::memory_order_relaxed) + 1;
    return theThread;
}

} // namespace

void mutex::lock() const
{
    const std::uint32_t me = thisThread();
    std::uint32_t owner = kFree;
    while (!owner_.compare_exchange_strong(owner, me, std::memory_order_acquire,
                                           std::memory_order_relaxed))
    {
        if (owner == me)
        {
            ++depth_;
            return;
        }
        owner_.wait(owner, std::memory_order_relaxed);
        owner = kFree;
    }
}

void mutex::unlock() const
{
    if (depth_ > 0)
    {
        --depth_;
        return;
    }
    owner_.store(kFree, std::memory_order_release);
    owner_.notify_one();
}

} // namespace Tolmen
