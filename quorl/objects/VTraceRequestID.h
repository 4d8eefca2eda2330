#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>
#include <quorl/foundation/ManyShares.h>
#include <quorl/foundation/RefPtr.h>
#include <quorl/foundation/Watched.h>
#include <quorl/objects/VRequest.h>

namespace Quorl
{

/// Which evaluation is passing through an object right now, and which two passed last.
///
/// | from | event                             | to   |
/// |------|-----------------------------------|------|
/// | idle | `addRequest`: true                | busy |
/// | busy | `addRequest`: false, no change    | busy |
/// | any  | `removeRequest`, by whomsoever    | idle |
///
/// Deliberate: an exception that leaves the walk leaves the object busy, since `Latest` keeps the
/// evaluation alive.
///
/// Threads: not atomic as a group; runs on the thread of the walk.
class QUORL_API VTraceRequestID
{
public:
    VTraceRequestID();
    virtual ~VTraceRequestID();

    /// Whether this evaluation is inside the object. Compares identities, dead or alive.
    virtual bool hasRequest(const VRequest& request) const;

    /// Lets an evaluation in, unless another is inside, or the same.
    bool addRequest(const VRequest& request);

    /// Lets the evaluation that is inside out, whichever it is.
    void removeRequest(const VRequest& request);

    /// Whether the last evaluation reached an object that the one before did not, or at other
    /// depths. Deliberate: an object that was not reached any more does not count. Says on standard
    /// output that both were the same evaluation, for which the answer is false.
    bool ExecutionGraphHasChanged() const;

    using Entry = Tolmen::Watched<RefPtr<VRequest::ID>>;

    Tolmen::Watched<WeakPtr<VRequest::ID>> Current; ///< dead or null if no evaluation is inside
    Entry Previous;                                 ///< the one before `Latest`
    Entry Latest;                                   ///< the one that entered last

private:
    friend class RequestPlan;
    friend class Repeats;
    friend class Visit;

    /// Whether the next evaluation that enters ends one whose identity is of a class of its own,
    /// and which nobody else has.
    bool endsForeignIdentity() const;

    // The same for a walk, which leaves as it has come.
    bool enter(const VRequest& request);
    void leave();
    void pass(Tolmen::ManyShares<VRequest::ID>& id, bool isTwice); ///< once, or more often
};

inline void VTraceRequestID::pass(Tolmen::ManyShares<VRequest::ID>& id, bool isTwice)
{
    id.push(Latest.quietly(), Previous.quietly());
    if (isTwice) id.put(Previous.quietly());
}

} // namespace Quorl
