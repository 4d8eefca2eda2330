#include <quorl/objects/Repeats.h>

#include <quorl/foundation/Profiler.h>
#include <quorl/objects/OwnOperations.h>
#include <quorl/objects/VObject.h>
#include <quorl/services/Vprintf.h>

#include <atomic>
#include <utility>

namespace Quorl
{
namespace
{

constexpr int kTraceVerbosity = 100; // at which the slots of a walk are told

constinit thread_local Repeats* theInnermost = nullptr;

std::uint64_t nextNumber()
{
    static constinit std::atomic<std::uint64_t> theNumber{0};
    return ++theNumber;
}

} // namespace

/// A walk within another one may visit what that has met, so the outer one cannot trust its marks
/// any more, nor leave for later what it owes.
Repeats::Repeats(const VRequest& request)
    : request_(request), number_(nextNumber()), outer_(theInnermost)
{
    realizeAll();
    for (Repeats* outer = outer_; outer != nullptr; outer = outer->outer_) ++outer->era_;
    theInnermost = this;
}

Repeats::~Repeats()
{
    theInnermost = outer_;
}

Repeats::Place Repeats::meet(VObject& object, Place asker)
{
    const Place first = hasMet(object) ? graph_.first(object.place_.place) : WalkGraph::kNowhere;
    const Place place = graph_.add(object, first);
    if (asker != WalkGraph::kNowhere) graph_.addSource(asker, place);
    met_.emplace_back();
    object.place_ = {number_, place};
    return place;
}

void Repeats::owe(const VObject& object, std::int32_t level, const VObject& caller)
{
    const Place place = object.place_.place;
    latent_.push_back({place, level, static_cast<std::int32_t>(caller.ID), false});
    met_[place].owedLevel = level;
    met_[place].owedSince = accounts_;
}

void Repeats::passOver(const VObject& object, std::int32_t level, const VObject& caller,
                       Place asker)
{
    const Place place = object.place_.place;
    graph_.addSource(asker, place);
    latent_.push_back({place, level, static_cast<std::int32_t>(caller.ID), true});
    visitTwice(place);
}

bool Repeats::hasMet(const VObject& object) const
{
    return object.place_.walk == number_;
}

const Repeats::Met* Repeats::metAt(const VObject& object) const
{
    return hasMet(object) ? &met_[object.place_.place] : nullptr;
}

bool Repeats::isSettled(const VObject& object) const
{
    const Met* const met = metAt(object);
    return met && met->isSettled && isSilent() && met->shape == Tolmen::Watch::shape() &&
           met->era == era_ &&
           (met->foreignCode == foreignCode_ || (met->isKept && met->alarms == watch_.alarms()));
}

/// Whether further visits have nothing to say or to be asked, to whomever it may be.
bool Repeats::isSilent() const
{
    return VObject::VERBOSE_REQUEST == 0 && !Tolmen::Profiler::isListenedTo() &&
           !isVprintfAudible(kTraceVerbosity) && !OwnOperations::hasIsCancelled(request_);
}

void Repeats::enter(Place place)
{
    Met& met = met_[graph_.first(place)];
    met.isVisitedTwice = met.isVisited;
    met.isVisited = true;
}

/// One suffices at the first visit, and as long as no code of others runs at all.
Tolmen::Watch* Repeats::watchFor(Place place)
{
    return graph_.first(place) != place && foreignCode_ != 0 ? &watch_ : nullptr;
}

void Repeats::settle(Place place, bool isKept)
{
    if (!isSilent()) return;
    Met& met = met_[place];
    met.shape = Tolmen::Watch::shape();
    met.era = era_;
    met.foreignCode = foreignCode_;
    met.alarms = watch_.alarms();
    met.isSettled = true;
    met.isKept = isKept;
}

/// What a second visit does to the traces: `Previous` is this evaluation, as `Latest` is. Each
/// object comes to this once.
void Repeats::visitTwice(Place place)
{
    ways_.push_back(place);
    while (!ways_.empty())
    {
        const Place at = ways_.back();
        ways_.pop_back();
        if (std::exchange(met_[at].isUpstreamTwice, true)) continue;
        VObject* const object = graph_.object(at);
        if (!std::exchange(met_[graph_.first(at)].isVisitedTwice, true) && object)
            object->Previous.quietly() = object->Latest.value();
        for (auto way = graph_.firstSource(at); way; way = way.next()) ways_.push_back(way.place());
    }
}

void Repeats::realize()
{
    if (latent_.empty()) return;
    ++accounts_;
    const VisitTally tally(graph_, latent_);
    for (const Place first : tally.places()) realize(tally, first);
    latent_.clear();
}

void Repeats::realize(const VisitTally& tally, Place first)
{
    const VisitTally::Sum& sum = tally.sum(first);
    request_.Id->considerVisits(
        {sum.minLevel, sum.maxLevel, sum.count, sum.minCaller, sum.maxCaller},
        graph_.number(first));
    VObject* const object = graph_.object(first);
    if (!object) return;
    RequestExecutor& executor = object->Executor;
    const std::int32_t levelBefore = executor.knownLevel();
    executor.descend(sum.count == 1 ? levelBefore : sum.levelBeforeLast, sum.lastLevel,
                     sum.maxLevel, tally.changes(first, levelBefore));
}

void Repeats::realizeAll()
{
    for (Repeats* walk = theInnermost; walk != nullptr; walk = walk->outer_) walk->realize();
}

void Repeats::forget(const VObject& object)
{
    for (Repeats* walk = theInnermost; walk != nullptr; walk = walk->outer_)
    {
        if (!walk->hasMet(object)) continue;
        walk->realize();
        walk->graph_.forgetObject(object.place_.place);
    }
}

/// The object's own, unless one is still owed to it.
std::int32_t Finding::levelOf(const VObject& object) const
{
    const Repeats::Met& met = repeats_.met_[place_];
    return met.owedSince == repeats_.accounts_ ? met.owedLevel : object.Executor.knownLevel();
}

void Finding::heard(const VObject& source)
{
    isSettled_ = isSettled_ && repeats_.isSettled(source);
    isKept_ = isKept_ && isSettled_ && repeats_.metAt(source)->isKept;
}

void Finding::ranForeignCode()
{
    hasMoreToDo();
    repeats_.foreignCodeRan();
}

void Finding::isIdle()
{
    if (isSettled_) repeats_.settle(place_, isKept_);
}

} // namespace Quorl
