#pragma once

#include <quorl/Export.h>
#include <quorl/objects/VRequest.h>

#include <atomic>

namespace Quorl
{

/// A ticket that can be cancelled from anywhere: by another thread, by a handler of signals, or by
/// an object that runs. The evaluation ends at the next input that it comes to.
///
/// Prefer it to a ticket with an `isCancelled` of its own, which has to be asked at every input on
/// every path of the network: of this one it is known that to ask it changes nothing, so that what
/// has been evaluated need not be walked again.
class QUORL_API CancellableRequest : public VRequest
{
public:
    /// \param cancellation becomes true when the evaluation is to end; must outlive the ticket and
    /// its copies.
    CancellableRequest(const RefPtr<ValuePool>& pool, bool flag,
                       const std::atomic<bool>& cancellation);
    CancellableRequest(const CancellableRequest& other);
    ~CancellableRequest() override;

    bool isCancelled() const final;

private:
    const std::atomic<bool>& cancellation_;
};

} // namespace Quorl
