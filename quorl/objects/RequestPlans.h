#pragma once

#include <quorl/Forward.h>
#include <quorl/foundation/RefPtr.h>
#include <quorl/objects/PlannedParts.h>
#include <quorl/objects/WalkGraph.h>

#include <memory>

namespace Quorl
{

class KeptPlans;

/// The plans of an object, one for each context where requests begin at it. They are taken for the
/// time of a request: whoever begins another one meanwhile finds none.
class RequestPlans
{
public:
    explicit RequestPlans(VObject& root);
    ~RequestPlans();
    RequestPlans(const RequestPlans&) = delete;
    RequestPlans& operator=(const RequestPlans&) = delete;

    /// Answers a request by a plan. \return false if that cannot be. Then nothing has been done,
    /// and a walk may still repeat parts.
    bool repeat(VRequest& request);

    PlannedParts& parts() { return parts_; }

    /// A walk has ended. Makes a plan for the next one, if the network has kept its shape for as
    /// long as a walk takes.
    void learn(const VRequest& request, const WalkGraph& walked);

    static void drop(VObject& root);

    /// To be called for an evaluation before it comes to objects. Its identity stays in their
    /// traces, and where the end of one may do anything, that is left to walks, which do it in its
    /// place: plans are void then, and the next ones are made when those traces have gone.
    static void admit(const VRequest& request);

private:
    static bool hasForeignIdentity(const VRequest& request);

    VObject& root_;
    std::unique_ptr<KeptPlans> kept_; // null before the first walk
    PlannedParts parts_;
};

} // namespace Quorl
