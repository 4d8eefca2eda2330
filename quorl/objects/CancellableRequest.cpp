#include <quorl/objects/CancellableRequest.h>

#include <quorl/objects/OwnOperations.h>

namespace Quorl
{

CancellableRequest::CancellableRequest(const RefPtr<ValuePool>& pool, bool flag,
                                       const std::atomic<bool>& cancellation)
    : VRequest(pool, flag), cancellation_(cancellation)
{
    OwnOperations::learnDefaults(*this);
}

CancellableRequest::CancellableRequest(const CancellableRequest& other)
    : VRequest(other), cancellation_(other.cancellation_)
{
}

CancellableRequest::~CancellableRequest() = default;

bool CancellableRequest::isCancelled() const
{
    return cancellation_.load(std::memory_order_relaxed);
}

} // namespace Quorl
