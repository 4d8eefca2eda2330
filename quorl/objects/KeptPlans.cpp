#include <quorl/objects/KeptPlans.h>

#include <quorl/objects/WalkSurvey.h>

#include <cstddef>
#include <mutex>
#include <utility>

namespace Quorl
{
namespace
{

constexpr std::size_t kMostSteps = std::size_t{1} << 20; // some 100 bytes each

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

const RequestPlan* KeptPlans::find(const RefPtr<ValuePool>& pool)
{
    std::erase_if(plans_, [](const auto& plan) { return !plan->isValid(); });
    for (const auto& plan : plans_)
        if (plan->isFor(pool)) return plan.get();
    return nullptr;
}

void KeptPlans::learn(VObject& root, const RefPtr<ValuePool>& pool, const WalkGraph& walked)
{
    const Moment now;
    if (std::exchange(lastWalk_, now) != now || hopeless_ == now || find(pool)) return;
    WalkSurvey survey(walked);
    const WalkSurvey::Result result = survey.from(root);
    if (result == WalkSurvey::Result::Disturbed) return;
    if (result == WalkSurvey::Result::Impossible || !makeRoom(survey.graph().size()))
    {
        hopeless_ = now;
        return;
    }
    plans_.push_back(std::make_unique<RequestPlan>(survey.graph(), pool));
    standLast();
}

/// Of two threads each may find the same room. \return whether there is as much.
bool KeptPlans::makeRoom(std::size_t steps)
{
    if (steps > kMostSteps) return false;
    const auto isRoom = [&] { return RequestPlan::stepsOfAll() + steps <= kMostSteps; };
    if (isRoom()) return true;
    const std::lock_guard lock(theWaiting().mutex);
    Line& line = theWaiting().line;
    for (auto place = line.begin(); place != line.end() && !isRoom();)
    {
        const std::unique_ptr<KeptPlans> oldest = takeFrom(**place);
        if (!oldest || oldest->place_ == place) ++place; // in use, or about to leave
        if (oldest && oldest->isInLine()) oldest->stepOut(line);
    }
    return isRoom();
}

void KeptPlans::standLast()
{
    const std::lock_guard lock(theWaiting().mutex);
    Line& line = theWaiting().line;
    line.splice(line.end(), isInLine() ? line : entry_, place_);
}

} // namespace Quorl
