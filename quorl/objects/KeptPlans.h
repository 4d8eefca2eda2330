#pragma once

#include <quorl/Forward.h>
#include <quorl/foundation/DeadEntries.h>
#include <quorl/foundation/RefPtr.h>
#include <quorl/foundation/Watch.h>
#include <quorl/objects/RequestPlan.h>
#include <quorl/objects/WalkGraph.h>

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <list>
#include <map>
#include <memory>

namespace Quorl
{

/// What an object keeps from request to request: its plans, one for each context.
///
/// Their home is a field of the object. Whoever uses them takes them out of it for that time, and
/// owns them. All plans of the process share a budget. What is at home may end at any time, to make
/// room for others: those first that have learnt nothing for the longest time. A plan that is void
/// is older than each that is not, so that void ones are in nobody's way.
///
/// Threads: any, also several with objects of their own each.
class KeptPlans
{
public:
    using Home = std::atomic<KeptPlans*>;

    /// \return null if nothing is at home.
    static std::unique_ptr<KeptPlans> takeFrom(Home& home);

    /// Brings them home. What has come there meanwhile ends.
    static void bringHome(std::unique_ptr<KeptPlans> plans);

    /// \param home must be empty, by `takeFrom`, before it ends.
    explicit KeptPlans(Home& home) : home_(home) {}
    ~KeptPlans();
    KeptPlans(const KeptPlans&) = delete;
    KeptPlans& operator=(const KeptPlans&) = delete;

    /// Drops those that are not valid any more, on the way. \return null if there is none.
    const RequestPlan* find(const RefPtr<ValuePool>& pool);

    /// A walk has ended that began at `root`. Makes a plan for the next one, if the network has
    /// kept its shape for as long as a walk takes.
    void learn(VObject& root, const RefPtr<ValuePool>& pool, const WalkGraph& walked);

private:
    /// Two moments are equal if no network has another shape, and no pool other variables.
    struct Moment
    {
        std::uint64_t shape = Tolmen::Watch::shape();
        std::uint64_t variables = Tolmen::Watch::variables();
        bool operator==(const Moment&) const = default;
    };

    using Plans = std::map<WeakPtr<ValuePool>, std::unique_ptr<RequestPlan>, std::less<>>;
    using Line = std::list<Home*>;
    struct Waiting;

    static Waiting& theWaiting();
    static bool isRoom(std::size_t steps);
    bool makeRoom(std::size_t steps);
    static void makeOthersLeave(std::size_t steps);
    void standLast();
    void stepOut(Line& line) { entry_.splice(entry_.begin(), line, place_); }
    bool isInLine() const { return entry_.empty(); }

    Home& home_;
    Plans plans_;
    Tolmen::DeadEntries endedPools_;
    Moment learnt_{0, 0};   // when the plans were made
    Moment lastWalk_{0, 0}; // its end
    Moment hopeless_{0, 0}; // when it was found that there can be no plan
    Line entry_{&home_};    // its node moves into the line of all, and back: neither needs memory
    const Line::iterator place_ = entry_.begin();
};

} // namespace Quorl
