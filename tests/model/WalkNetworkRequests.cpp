#include <tests/model/WalkNetwork.h>

#include <quorl/foundation/Cache.h>
#include <quorl/objects/VObjectIsOutOfMemory.h>
#include <quorl/services/Vprintf.h>
#include <tests/model/At.h>

#include <algorithm>
#include <iterator>
#include <stdexcept>

/// How a network is asked, and what is done to requests.
namespace QuorlTest::Walks
{

using Quorl::Ageable;
using Quorl::RefPtr;
using Quorl::ValuePool;
using Quorl::VObject;
using Quorl::VParameter;
using Quorl::VRequest;

namespace
{

constexpr int kMostSteps = 400; // of one walk
constexpr int kLoud = 100;      // for `Vprintf`

/// A ticket that is cancelled after a number of polls.
class CountedTicket final : public VRequest
{
public:
    CountedTicket(Network& network, const RefPtr<ValuePool>& pool, int polls)
        : VRequest(pool, true), pollsLeft(polls), network_(network)
    {
    }
    CountedTicket(const CountedTicket&) = default; // another ticket of the same evaluation

    bool isCancelled() const override
    {
        if (pollsLeft > 0) --pollsLeft;
        network_.notePoll(pollsLeft);
        return pollsLeft == 0;
    }

    mutable int pollsLeft; ///< -1 for never

private:
    Network& network_;
};

std::unique_ptr<VRequest> copyOf(const VRequest& ticket)
{
    if (const auto* const counted = dynamic_cast<const CountedTicket*>(&ticket))
        return std::make_unique<CountedTicket>(*counted);
    return std::make_unique<VRequest>(ticket);
}

} // namespace

std::unique_ptr<VRequest> Network::newTicket(int poolNumber, int how)
{
    constexpr int kCounted = 12;
    std::unique_ptr<VRequest> ticket;
    if (how % 16 < kCounted)
        ticket = std::make_unique<VRequest>(pool(poolNumber), false);
    else
        ticket = std::make_unique<CountedTicket>(*this, pool(poolNumber),
                                                 how % 16 == kCounted ? -1 : 1 + how / 16 % 24);
    evaluations_.emplace_back(ticket->Id);
    return ticket;
}

void Network::askAfresh(const Move& move)
{
    lastRequest_ = move;
    lastTicket_ = newTicket(move.b, move.c);
    ask(move.a, *lastTicket_, move.c);
}

void Network::askAgain(const Move& move)
{
    if (!lastTicket_) return;
    if (move.kind == Move::Again) return ask(move.a, *lastTicket_, move.c);
    const std::unique_ptr<VRequest> copy = copyOf(*lastTicket_);
    ask(move.a, *copy, move.c);
    lastTicket_->updateFrom(*copy);
}

void Network::ask(int number, VRequest& request, int how)
{
    const RefPtr<VObject> root = object(number);
    if (!root || !isWalkable(number)) return;
    try
    {
        transcript_.note("answers", answer(*root, request, how));
    }
    catch (const Quorl::VObjectIsOutOfMemory& error)
    {
        transcript_.note("memory of", numberOf(error.Object));
    }
    catch (const Tolmen::Cache::OutOfMemory&)
    {
        transcript_.note("no memory");
    }
    catch (const VObject::ExecutionStatus& status)
    {
        transcript_.note("status", status.status);
    }
    catch (const std::runtime_error&)
    {
        transcript_.note("error");
    }
}

bool Network::answer(VObject& root, VRequest& request, int how)
{
    const double precision = 0.5 + how / 16 % 2;
    switch (how % 16)
    {
        case 10: return root.request(request, precision, {}, {});
        case 11: return root.request(request, precision, objects_.front(), objects_.back());
        default: return root.init_request(request, precision);
    }
}

void Network::askInside(const Move& move, VRequest* ticket)
{
    const RefPtr<VObject> root = object(move.a);
    if (!root || !isWalkable(move.a)) return;
    const bool isCaught = move.c % 2 == 0;
    try
    {
        if (!ticket || move.b % 4 < 2)
        {
            const std::unique_ptr<VRequest> another = newTicket(move.b, move.c);
            transcript_.note("inside", answer(*root, *another, move.c));
        }
        else if (move.b % 4 == 2)
            transcript_.note("inside", answer(*root, *ticket, move.c));
        else
        {
            const std::unique_ptr<VRequest> copy = copyOf(*ticket);
            transcript_.note("inside", answer(*root, *copy, move.c));
            ticket->updateFrom(*copy);
        }
    }
    catch (...)
    {
        transcript_.note("error inside");
        if (!isCaught) throw;
    }
}

/// Whether a walk from there comes to an end soon: the number of steps can be exponential.
bool Network::isWalkable(int root)
{
    if (!isWiringKnown_)
    {
        sources_.assign(objects_.size(), {});
        for (std::size_t slot = 0; slot < slots_.size(); ++slot)
            if (const RefPtr<VParameter>& shown = slots_[slot]->Parameter; shown && shown->source)
                sources_[at(slotOwners_[slot])].push_back(numberOf(shown->source));
        isWiringKnown_ = true;
    }
    std::vector<bool> isInside(objects_.size());
    return steps(within(root, objects_.size()), kMostSteps, isInside) < kMostSteps;
}

/// \return how many there are, or `budget` if there are more.
int Network::steps(int number, int budget, std::vector<bool>& isInside) const
{
    isInside[at(number)] = true;
    int count = 1;
    for (const int source : sources_[at(number)])
    {
        if (count >= budget) break;
        if (source >= 0 && !isInside[at(source)]) count += steps(source, budget - count, isInside);
    }
    isInside[at(number)] = false;
    return std::min(count, budget);
}

bool Network::performOnRequest(const Move& move, VRequest* ticket)
{
    constexpr int kVerbosities[] = {0, 0, 0, 0, 1, 3, 4, 5, 6, 11, 20, 21};
    switch (move.kind)
    {
        case Move::Request: askInside(move, ticket); break;
        case Move::Verbosity:
            VObject::VERBOSE_REQUEST = kVerbosities[within(move.b, std::size(kVerbosities))];
            Quorl::verbosity_level = move.c % 16 == 0 ? kLoud : 0;
            break;
        case Move::Listen: Tolmen::Profiler::setListener(move.b % 2 == 0 ? this : nullptr); break;
        case Move::ChangeTicket:
            if (ticket) changeTicket(move, *ticket);
            break;
        case Move::Throw: outcome(move.c); break;
        case Move::Cancel:
            if (auto* const counted = dynamic_cast<CountedTicket*>(ticket)) counted->pollsLeft = 1;
            break;
        default: return false;
    }
    return true;
}

void Network::changeTicket(const Move& move, VRequest& ticket)
{
    switch (move.c % 5)
    {
        case 0: ticket.NewestConnection = Ageable::Ooooold; break;
        case 1: ticket.NewestConnection = anyAge(move.b, ticket.NewestConnection); break;
        case 2:
            ticket.NewestConnectionObject = serials_[at(within(move.a, serials_.size()))];
            break;
        case 3: ticket.Pool = pool(move.b); break;
        default: ticket.Id = new VRequest::ID; evaluations_.emplace_back(ticket.Id);
    }
}

} // namespace QuorlTest::Walks
