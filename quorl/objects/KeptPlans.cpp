#include <quorl/objects/KeptPlans.h>

#include <quorl/objects/WalkSurvey.h>

#include <cstddef>
#include <mutex>
#include <utility>

namespace Quorl
{
namespace
{

constexpr std::size_t kMostSteps = std::size_t{1} << 20; // some 100 bytes each, and their inputs

/// What was never there has not ended.
bool hasEnded(const WeakPtr<ValuePool>& pool)
{
    return pool.referer && !pool;
}

} // namespace

/// The homes of all that have plans, in the order in which these learnt something last. They
/// outlive their places in the line.
struct KeptPlans::Waiting
{
    std::mutex mutex;
    Line line;
};

KeptPlans::Waiting& KeptPlans::theWaiting()
{
    static Waiting& waiting = *new Waiting; // objects may end at any time
    return waiting;
}

std::unique_ptr<KeptPlans> KeptPlans::takeFrom(Home& home)
{
    return std::unique_ptr<KeptPlans>(home.exchange(nullptr, std::memory_order_acquire));
}

void KeptPlans::bringHome(std::unique_ptr<KeptPlans> plans)
{
    Home& home = plans->home_;
    delete home.exchange(plans.release(), std::memory_order_acq_rel);
}

KeptPlans::~KeptPlans()
{
    if (!isInLine()) return;
    const std::lock_guard lock(theWaiting().mutex);
    stepOut(theWaiting().line);
}

/// All are of one moment.
const RequestPlan* KeptPlans::find(const RefPtr<ValuePool>& pool)
{
    if (learnt_ != Moment()) plans_.clear();
    const auto known = plans_.find(pool);
    return known != plans_.end() && known->second->isFor(pool) ? known->second.get() : nullptr;
}

void KeptPlans::learn(VObject& root, const RefPtr<ValuePool>& pool, const WalkGraph& walked)
{
    const Moment now;
    if (std::exchange(lastWalk_, now) != now || hopeless_ == now) return;
    if (hasEnded(pool) || find(pool)) return;
    WalkSurvey survey(walked);
    const WalkSurvey::Result result = survey.from(root);
    if (result == WalkSurvey::Result::Disturbed) return;
    if (result == WalkSurvey::Result::Impossible || !makeRoom(survey.graph().size()))
    {
        hopeless_ = now;
        return;
    }
    learnt_ = now;
    endedPools_.takeOut(plans_, [](const auto& plan) { return hasEnded(plan.first); });
    plans_.insert_or_assign(pool, std::make_unique<RequestPlan>(survey.graph(), pool));
    standLast();
}

bool KeptPlans::isRoom(std::size_t steps)
{
    return RequestPlan::stepsOfAll() + steps <= kMostSteps;
}

/// Its own plans go last, since they have learnt something last. Of two threads each may find the
/// same room. \return whether there is as much.
bool KeptPlans::makeRoom(std::size_t steps)
{
    if (steps > kMostSteps) return false;
    if (!isRoom(steps))
        std::erase_if(plans_, [](const auto& plan) { return hasEnded(plan.first); });
    if (!isRoom(steps)) makeOthersLeave(steps);
    while (!isRoom(steps) && !plans_.empty()) plans_.erase(plans_.begin());
    return isRoom(steps);
}

void KeptPlans::makeOthersLeave(std::size_t steps)
{
    const std::lock_guard lock(theWaiting().mutex);
    Line& line = theWaiting().line;
    for (auto place = line.begin(); place != line.end() && !isRoom(steps);)
    {
        const std::unique_ptr<KeptPlans> oldest = takeFrom(**place);
        if (!oldest || oldest->place_ == place) ++place; // in use, or about to leave
        if (oldest && oldest->isInLine()) oldest->stepOut(line);
    }
}

void KeptPlans::standLast()
{
    const std::lock_guard lock(theWaiting().mutex);
    Line& line = theWaiting().line;
    line.splice(line.end(), isInLine() ? line : entry_, place_);
}

} // namespace Quorl
