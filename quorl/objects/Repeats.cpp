#include <quorl/objects/Repeats.h>

#include <quorl/foundation/Profiler.h>
#include <quorl/objects/LevelCourse.h>
#include <quorl/objects/OwnOperations.h>
#include <quorl/objects/RequestPlans.h>
#include <quorl/objects/VObject.h>
#include <quorl/services/Vprintf.h>
#include <quorl/slots/InputCursor.h>

#include <memory>
#include <utility>

namespace Quorl
{
namespace
{

constinit thread_local Repeats* theInnermost = nullptr;

} // namespace

/// A walk within another one may visit what that has met, so the outer one cannot trust its marks
/// any more, nor leave for later what it owes.
Repeats::Repeats(const VRequest& request)
    : request_(request), id_(request.Id), pool_(request.Pool), shape_(Tolmen::Watch::shape()),
      newestConnection_(request.NewestConnection), outer_(theInnermost)
{
    upsetAll();
    theInnermost = this;
}

Repeats::~Repeats()
{
    theInnermost = outer_;
}

Repeats::Place Repeats::meet(VObject& object)
{
    if (request_.Pool != pool_) notice();
    met_.emplace_back();
    cycles_.add();
    return graph_.add(object);
}

Repeats::Place Repeats::lead(VObject& source, Place asker)
{
    if (metAt(source))
    {
        const Place place = meet(source);
        owe(place, asker, false);
        return place;
    }
    tell(source, asker);
    const Place place = meet(source);
    graph_.addSource(asker, place);
    return place;
}

void Repeats::passOver(const VObject& source, Place asker)
{
    const Place place = graph_.placeOf(source);
    owe(place, asker, true);
    visitTwice(place);
}

void Repeats::tell(VObject& source, Place asker)
{
    const Depth depth = depthBelow(asker);
    request_.Id->log_.add(
        static_cast<std::int32_t>(source.ID),
        {depth.level, depth.level, 1, graph_.number(asker), graph_.number(asker)});
    source.Executor.descend(*depth.chain, depth.level);
}

/// Leaves a visit to be accounted for together with others of the same chain.
void Repeats::owe(Place place, Place asker, bool isDeep)
{
    notice();
    const Depth depth = depthBelow(asker);
    if (chain_ != *depth.chain)
    {
        realize();
        chain_ = graph_.object(asker)->Executor.Max;
    }
    graph_.addSource(asker, place);
    latent_.push_back({place, depth.level, graph_.number(asker), isDeep});
    Met& met = met_[graph_.first(place)];
    met.owedLevel = depth.level;
    met.owedSince = accounts_;
    // A chain is a handle that is read like any other, without a word to anybody.
    if (graph_.object(place)->Executor.Max != chain_) realize();
}

/// By what the asker has been told of its own depth, or what it is still owed.
Repeats::Depth Repeats::depthBelow(Place asker) const
{
    const VObject& object = *graph_.object(asker); // which may have been met anew since
    const Place place = graph_.placeOf(object);
    if (place != WalkGraph::kNowhere)
    {
        const Met& met = met_[graph_.first(place)];
        if (met.owedSince == accounts_) return {met.owedLevel + 1, &chain_};
    }
    return {object.Executor.knownLevel() + 1, &object.Executor.Max};
}

const Repeats::Met* Repeats::metAt(const VObject& object) const
{
    const Place place = graph_.placeOf(object);
    return place != WalkGraph::kNowhere ? &met_[place] : nullptr;
}

/// Code of others may have changed what the request is for, or the network.
void Repeats::notice()
{
    const bool isShapeKept = shape_ == Tolmen::Watch::shape();
    const bool isConnectionKept = !(request_.NewestConnection < newestConnection_);
    if (!isShapeKept || !isConnectionKept) ++era_;
    if (newestConnection_ < request_.NewestConnection) ++connections_;
    shape_ = Tolmen::Watch::shape();
    newestConnection_ = request_.NewestConnection;
    if (request_.Id == id_ && request_.Pool == pool_) return;
    realize();
    if (pool_ && request_.Pool != pool_) formerPools_.insert(pool_);
    id_ = request_.Id;
    pool_ = request_.Pool;
    RequestPlans::admit(request_);
    isTicketKept_ = false;
    ++era_;
}

bool Repeats::hasKeptTicket()
{
    notice();
    return isTicketKept_;
}

bool Repeats::isSettled(const VObject& object)
{
    return isIdle(object) && cycles_.isCutAsBefore(graph_.placeOf(object));
}

/// Whether its last visit has found nothing to do, and nothing has changed since.
bool Repeats::isIdle(const VObject& object)
{
    notice();
    const Met* const met = metAt(object);
    return met && met->settled == era_ && met->told >= connections_ && isSilent(request_) &&
           (met->foreignCode == foreignCode_ || (met->isKept && met->alarms == watch_.alarms()));
}

/// Whether further visits have nothing to say or to be asked, to whomever it may be.
bool Repeats::isSilent(const VRequest& request)
{
    return VObject::VERBOSE_REQUEST == 0 && !Tolmen::Profiler::isListenedTo() &&
           !isVprintfAudible(InputCursor::kTraceVerbosity) &&
           !OwnOperations::hasIsCancelled(request) && !request.isCancelled();
}

/// \return whether the walk is inside of the object anyway.
bool Repeats::enter(Place place)
{
    notice();
    Met& met = met_[graph_.first(place)];
    if (met.visited == era_) met.visitedTwice = era_;
    met.visited = era_;
    return cycles_.enter(place, graph_.first(place));
}

void Repeats::leave(Place place)
{
    cycles_.leave(place, graph_.first(place));
}

/// One suffices at the first visit, and as long as no code of others runs at all.
Tolmen::Watch* Repeats::watchFor(Place place)
{
    return graph_.first(place) != place && foreignCode_ != 0 ? &watch_ : nullptr;
}

std::uint32_t Repeats::connections()
{
    notice();
    return connections_;
}

void Repeats::settle(Place place, bool isKept, std::uint32_t told, WalkCycles::Passed&& passed)
{
    if (!isSilent(request_)) return;
    notice();
    Met& met = met_[place];
    met.settled = era_;
    met.foreignCode = foreignCode_;
    met.alarms = watch_.alarms();
    met.told = told;
    met.isKept = isKept;
    cycles_.settle(place, graph_.first(place), std::move(passed));
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
        if (std::exchange(met_[at].upstreamTwice, era_) == era_) continue;
        VObject* const object = graph_.object(at);
        if (std::exchange(met_[graph_.first(at)].visitedTwice, era_) != era_ && object)
        {
            if (object->endsForeignIdentity()) foreignCodeRan();
            object->Previous.quietly() = object->Latest.value();
        }
        for (auto way = graph_.firstSource(at); way; way = way.next()) ways_.push_back(way.place());
    }
}

/// By whatever they reach. The first account of a walk, which mostly is the only one, may look at
/// all that the walk has met.
void Repeats::realize()
{
    if (latent_.empty()) return;
    if (accounts_ == 1) return account(graph_, latent_, [](Place place) { return place; });
    excerpt_.take(graph_, latent_);
    account(excerpt_.graph(), excerpt_.visits(),
            [&](Place place) { return excerpt_.origin(place); });
}

/// What may fail comes first, so that nobody is accounted for twice.
template <class Origin>
void Repeats::account(const WalkGraph& graph, const std::vector<LatentVisit>& visits,
                      Origin&& origin)
{
    const VisitTally tally(graph, visits);
    if (id_) id_->log_.reserve(tally.places().size());
    if (tally.areSeveralLevels())
        chain_->Changes.owe(std::make_shared<const LevelCourse>(graph, visits),
                            {0, static_cast<Place>(graph.size())});
    latent_.clear();
    ++accounts_;
    for (const Place first : tally.places()) realize(tally.sum(first), origin(first));
}

void Repeats::realize(const VisitTally::Sum& sum, Place first)
{
    if (id_)
        id_->log_.add(graph_.number(first),
                      {sum.minLevel, sum.maxLevel, sum.count, sum.minCaller, sum.maxCaller});
    VObject* const object = graph_.object(first);
    if (!object) return;
    object->Executor.descend(
        chain_, {sum.count > 1, sum.firstLevel, sum.levelBeforeLast, sum.lastLevel, sum.maxLevel});
}

void Repeats::realizeAll()
{
    for (Repeats* walk = theInnermost; walk != nullptr; walk = walk->outer_) walk->realize();
}

void Repeats::upsetAll()
{
    realizeAll();
    for (Repeats* walk = theInnermost; walk != nullptr; walk = walk->outer_) ++walk->era_;
}

void Repeats::forget(const VObject& object)
{
    for (Repeats* walk = theInnermost; walk != nullptr; walk = walk->outer_)
    {
        const Place place = walk->graph_.placeOf(object);
        if (place == WalkGraph::kNowhere) continue;
        walk->realize();
        walk->graph_.forgetObject(place);
    }
}

} // namespace Quorl
