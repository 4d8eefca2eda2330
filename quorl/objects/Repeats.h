#pragma once

#include <quorl/Forward.h>
#include <quorl/foundation/Ageable.h>
#include <quorl/foundation/RefPtr.h>
#include <quorl/foundation/Watch.h>
#include <quorl/objects/RequestExecutor.h>
#include <quorl/objects/VRequest.h>
#include <quorl/objects/VisitTally.h>
#include <quorl/objects/WalkCycles.h>
#include <quorl/objects/WalkExcerpt.h>
#include <quorl/objects/WalkGraph.h>

#include <cstdint>
#include <limits>
#include <set>
#include <vector>

namespace Quorl
{

/// Spares a walk the visits that would find nothing new.
///
/// An object is walked again for every path that leads to it. Once it is settled (a visit has found
/// nothing to do in all that is upstream of it, and nothing has changed since), a further visit
/// changes nothing but tallies, levels and traces. It is latent then: put on a list, and worked out
/// with all others when the walk ends or when somebody reads what it concerns.
///
/// A source is passed over where the walk is inside of it, which closes a cycle: see `WalkCycles`.
///
/// An object tells its validators of the newest connection that the request has met: what has some
/// upstream is settled only until the request meets a newer one.
///
/// What may have changed since is known like this. As long as no code of others has run, nothing
/// has. After that, an object is walked once more, and what that visit sees is kept under a watch;
/// with no alarm since, still nothing has changed.
///
/// Objects that end during the walk are to be told here (`forget`).
class Repeats
{
public:
    using Place = WalkGraph::Place;

    explicit Repeats(const VRequest& request);
    ~Repeats();
    Repeats(const Repeats&) = delete;
    Repeats& operator=(const Repeats&) = delete;

    bool isSettled(const VObject& object);

    /// A visit is to be paid to an object that nobody asks, because the walk begins there. The
    /// context, with its age there, stays until the walk ends.
    Place meet(VObject& object);

    /// The same to a source that the visit at `asker` asks.
    Place lead(VObject& source, Place asker);

    /// Tells a source, and the log, how deep it is where the visit at `asker` asks it.
    void tell(VObject& source, Place asker);

    /// A visit is not paid. \pre the source is settled.
    void passOver(const VObject& source, Place asker);

    /// Code of others has run.
    void foreignCodeRan() { ++foreignCode_; }

    /// Whether walks for a request have nothing to say, and nobody but the objects to ask.
    static bool isSilent(const VRequest& request);

    /// Whether the request has been for one evaluation and one context all the time.
    bool hasKeptTicket();

    /// What has been walked.
    const WalkGraph& graph() const { return graph_; }

    /// Accounts for all latent visits.
    void realize();

    /// The same for all walks of this thread, since somebody reads.
    static void realizeAll();

    /// The same, and what is settled is so no more, since somebody writes.
    static void upsetAll();

    /// An object ends, on this thread.
    static void forget(const VObject& object);

private:
    friend class Finding;

    static constexpr std::uint32_t kNobody = std::numeric_limits<std::uint32_t>::max();

    struct Met
    {
        // By place

        std::uint32_t settled = 0; // the last era in which it was; 0 for never
        std::uint32_t foreignCode = 0;
        std::uint32_t alarms = 0;
        std::uint32_t upstreamTwice = 0; // the same, for two visits to all that is upstream
        std::uint32_t told = kNobody;    // validators here and upstream, of so many connections
        bool isKept = false;

        // By first place, that is by object

        std::int32_t owedLevel = 0;
        std::uint32_t owedSince = 0; // in accounts; 0 for never
        std::uint32_t visited = 0;   // eras, again
        std::uint32_t visitedTwice = 0;
    };

    struct Depth
    {
        std::int32_t level;
        const RefPtr<RequestExecutor::MaxRequestExecutor>* chain;
    };

    Depth depthBelow(Place asker) const;
    void owe(Place place, Place asker, bool isDeep);
    void notice();
    const Met* metAt(const VObject& object) const;
    bool isIdle(const VObject& object);
    bool enter(Place place);
    void leave(Place place);
    std::uint32_t connections();
    void settle(Place place, bool isKept, std::uint32_t told, WalkCycles::Passed&& passed);
    Tolmen::Watch* watchFor(Place place);
    void visitTwice(Place place);
    template <class Origin>
    void account(const WalkGraph& graph, const std::vector<LatentVisit>& visits, Origin&& origin);
    void realize(const VisitTally::Sum& sum, Place first);

    const VRequest& request_;
    WeakPtr<VRequest::ID> id_; // of the request, as long as that is for the same evaluation
    RefPtr<ValuePool> pool_;   // and context, whose ages visits are at
    std::set<RefPtr<ValuePool>> formerPools_; // where visits began that may still be under way
    WalkGraph graph_;
    std::vector<Met> met_;
    WalkCycles cycles_;
    std::vector<LatentVisit> latent_;
    RefPtr<RequestExecutor::MaxRequestExecutor> chain_; // of the latent visits
    std::vector<Place> ways_;                           // working storage, as is the next
    WalkExcerpt excerpt_;
    Tolmen::Watch watch_;
    std::uint32_t foreignCode_ = 0;
    std::uint32_t accounts_ = 1; // rises when latent visits have been accounted for
    std::uint32_t era_ = 1;      // another one when what visits have left behind may have changed
    std::uint64_t shape_;
    Ageable newestConnection_;      // that the request has met
    std::uint32_t connections_ = 1; // rises with that
    bool isTicketKept_ = true;
    Repeats* const outer_; // of the same thread
};

} // namespace Quorl
