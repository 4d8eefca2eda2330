#include <tests/model/WalkNetwork.h>

#include <quorl/foundation/Cache.h>
#include <quorl/objects/VObjectIsOutOfMemory.h>
#include <quorl/services/Vprintf.h>
#include <quorl/slots/VSlotTables.h>
#include <tests/model/At.h>
#include <tests/model/EvaluationModel.h>

#include <algorithm>
#include <stdexcept>
#include <utility>

/// The moves.
namespace QuorlTest::Walks
{

using Quorl::Ageable;
using Quorl::RefPtr;
using Quorl::ValuePool;
using Quorl::VObject;
using Quorl::VParameter;
using Quorl::VRequest;
using Quorl::VSlot;
using Quorl::WeakPtr;
using Quorl::WeakVObjectPtr;

namespace
{

constexpr int kFuel = 24;          // moves that are done inside of one
constexpr int kMostActs = 4;       // in a hook
constexpr int kMostInputs = 5;     // of an object
constexpr int kMostSteps = 400;    // of one walk
constexpr int kLevelsOfStart = 3;  // of inputs
constexpr int kLevelOfWalked = 50; // behind, or ahead of, all others
constexpr int kLoud = 100;         // for `Vprintf`

Network* theNetwork = nullptr; // that is being played on

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

template <int Which>
bool runFunction(VObject* object, VRequest& request, double precision)
{
    const int number = theNetwork->numberOf(WeakVObjectPtr(object));
    theNetwork->run(number, kInFunction, &request, Which + precision);
    return theNetwork->behaviour(number, kFunction) != 0;
}

bool isToBeNoted(int kind)
{
    switch (kind)
    {
        case MoveKinds::Request:
        case MoveKinds::Repeat:
        case MoveKinds::Again:
        case MoveKinds::Copied: return true;
        default: return false;
    }
}

int within(int number, std::size_t count)
{
    return static_cast<int>(static_cast<std::size_t>(number) % count);
}

/// Raises a number for the time of a scope.
class Depth
{
public:
    Depth(int& number, int by) : number_(number), by_(by) { number_ += by_; }
    ~Depth() { number_ -= by_; }
    Depth(const Depth&) = delete;
    Depth& operator=(const Depth&) = delete;

private:
    int& number_;
    const int by_;
};

bool outcome(int which)
{
    switch (which % Evaluation::kOutcomes)
    {
        case Evaluation::kFails: return false;
        case Evaluation::kSucceeds: return true;
        case Evaluation::kStatusModified: throw VObject::ExecutionStatus(3, "told to");
        case Evaluation::kStatusFailed: throw VObject::ExecutionStatus(5, "told to");
        case Evaluation::kStatusOther: throw VObject::ExecutionStatus(9, "told to");
        case Evaluation::kOutOfMemory: throw Tolmen::Cache::OutOfMemory();
        default: throw std::runtime_error("told to");
    }
}

std::unique_ptr<VRequest> copyOf(const VRequest& ticket)
{
    if (const auto* const counted = dynamic_cast<const CountedTicket*>(&ticket))
        return std::make_unique<CountedTicket>(*counted);
    return std::make_unique<VRequest>(ticket);
}

} // namespace

Network::Network(Make make, Transcript& transcript) : make_(make), transcript_(transcript)
{
    theNetwork = this;
    Quorl::verbosity_level = 0;
    pools_.emplace_back();
    while (pools_.size() < kPools) pools_.emplace_back(new ValuePool);
}

Network::~Network()
{
    VObject::VERBOSE_REQUEST = 0;
    Quorl::verbosity_level = 0;
    Tolmen::Profiler::setListener(nullptr);
    for (const auto& owned : owned_)
        if (owned) owned->VManagedObject::remove();
    theNetwork = nullptr;
}

RefPtr<VObject> Network::object(int number) const
{
    return objects_[at(within(number, objects_.size()))];
}

const RefPtr<ValuePool>& Network::pool(int number) const
{
    return pools_[at(within(number, pools_.size()))];
}

const RefPtr<VParameter>& Network::parameter(int number) const
{
    return parameters_[at(within(number, parameters_.size()))];
}

// From outside

void Network::play(const Move& move)
{
    fuel_ = kFuel;
    if (move.kind == Move::NewObject) return newObject(move.a);
    if (objects_.empty() || takesNext(move)) return;
    switch (move.kind)
    {
        case Move::Behave: behave(move); break;
        case Move::Function: {
            const RefPtr<VObject> found = object(move.a);
            if (found)
                found->insertUpdateFunction(move.b % 2 == 0 ? &runFunction<0> : &runFunction<1>);
            break;
        }
        case Move::Request: askAfresh(move); break;
        case Move::Repeat:
            for (int times = move.a % 3; times >= 0; --times) askAfresh(lastRequest_);
            break;
        case Move::Again:
        case Move::Copied: askAgain(move); break;
        case Move::Throw: break; // nobody would catch it
        default: perform(move, lastTicket_.get());
    }
    if (isToBeNoted(move.kind)) record();
}

/// \return whether the move is made of one that was recorded before.
bool Network::takesNext(const Move& move)
{
    if (move.kind == Move::InHook)
    {
        recorder_ = move;
        return true;
    }
    const Move recorder = std::exchange(recorder_, Move{Move::kKinds, 0, 0, 0});
    if (recorder.kind == Move::kKinds) return false;
    Script& script = scripts_[at(within(recorder.a, scripts_.size()))];
    std::vector<Act>& acts = script.acts[within(recorder.b, kHooks)];
    if (acts.size() < kMostActs) acts.push_back({move, 1 + recorder.c % 3, 0});
    return true;
}

void Network::newObject(int kind)
{
    const int number = static_cast<int>(objects_.size());
    const RefPtr<VObject> made(
        make_(*this, "o" + std::to_string(number), number, kind % kObjectKinds));
    made->enableRequestProcessing();
    owned_.push_back(made);
    objects_.emplace_back(made);
    serials_.push_back(made->ID);
    scripts_.emplace_back();
    outputs_.emplace_back();
    validators_.emplace_back(new Quorl::VConnectionValidator);
    made->insertConnectionValidator(validators_.back());
    for (int output = 0; output <= number % 2; ++output)
    {
        const std::string name = "out" + std::to_string(output);
        outputs_.back().push_back(newParameter(name));
        made->registerOutput(parameters_.back(), name);
    }
    isWiringKnown_ = false;
}

int Network::newParameter(const std::string& name)
{
    parameters_.emplace_back(new Quorl::VValueParameter<double>(
        RefPtr<Quorl::VValue<double>>(new Quorl::VValue<double>(0.0)), name));
    return static_cast<int>(parameters_.size()) - 1;
}

void Network::behave(const Move& move)
{
    scripts_[at(within(move.a, scripts_.size()))].behaviour[within(move.b, kAspects)] = move.c;
}

// Asking

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

/// Whether an evaluation goes through its inputs.
bool Network::isWalked(const VObject& object)
{
    return object.RequestCounter.value() != object.UpdateCounter.value();
}

// Inside of a walk

int Network::behaviour(int number, int aspect) const
{
    return scripts_[at(number)].behaviour[aspect];
}

bool Network::tellsLies(int number)
{
    Script& script = scripts_[at(number)];
    const int period = script.behaviour[kLies];
    return period > 0 && ++script.questions % (period + 1) == 0;
}

void Network::run(int number, int hook, const VRequest* request, double precision)
{
    const VObject& self = *objects_[at(number)];
    transcript_.note("run", number, hook, static_cast<int>(1000 * precision),
                     request ? numberOf(WeakPtr<VRequest::ID>(request->Id)) : -1,
                     self.RequestCounter.value(), self.UpdateCounter.value());
    const bool mayChange = hook != kInMust && hook != kInTell && hook != kInIgnore;
    const Depth ignoring(ignoring_, hook == kInIgnore ? 1 : 0);
    std::vector<Act>& acts = scripts_[at(number)].acts[hook];
    for (std::size_t index = 0; index < acts.size(); ++index)
        if (++acts[index].count % acts[index].period == 0)
            perform(request ? broughtTo(*request, acts[index].move) : acts[index].move,
                    mayChange ? const_cast<VRequest*>(request) : nullptr);
}

/// Half of what is done to ages is done where the walk is.
Move Network::broughtTo(const VRequest& request, Move act) const
{
    switch (act.kind)
    {
        case Move::Touch:
        case Move::WriteAge:
        case Move::WriteParameterAge:
        case Move::TouchState:
        case Move::WriteState:
            if (act.b % 2 == 0)
                act.b = static_cast<int>(std::ranges::find(pools_, request.Pool) - pools_.begin());
            return act;
        default: return act;
    }
}

bool Network::update(int number, VRequest& request, double precision)
{
    run(number, kInUpdate, &request, precision);
    for (const int output : outputs_[at(number)]) switch (behaviour(number, kOutput) % 4)
        {
            case 1: parameters_[at(output)]->touchValue(request.Pool); break;
            case 2:
                parameters_[at(output)]->setValueFromText("1", request.Pool, "", true, {}, nullptr,
                                                          nullptr);
                break;
            case 3: parameters_[at(output)]->getValue(request.Pool, ""); break;
            default: break;
        }
    return outcome(behaviour(number, kOutcome));
}

// Whatever can be done outside and inside

void Network::perform(const Move& move, VRequest* ticket)
{
    if (--fuel_ < 0) return;
    if (performOnWiring(move) || performOnAges(move) || performOnObject(move)) return;
    performOnRequest(move, ticket);
}

bool Network::performOnWiring(const Move& move)
{
    if (move.kind == Move::NewSlot)
    {
        newSlot(move);
        isWiringKnown_ = false;
        return true;
    }
    if (move.kind == Move::Leave)
    {
        leave(within(move.a, objects_.size()));
        isWiringKnown_ = false;
        return true;
    }
    if (move.kind == Move::WriteSource)
    {
        const RefPtr<VObject> source = object(move.b);
        const bool isKept = move.c % 4 != 0;
        parameter(move.a)->source =
            isKept ? WeakPtr<Quorl::VSlotContainer>(source) : WeakPtr<Quorl::VSlotContainer>();
        isWiringKnown_ = false;
        return true;
    }
    if (slots_.empty()) return false;
    const int number = within(move.a, slots_.size());
    VSlot& slot = *slots_[at(number)];
    switch (move.kind)
    {
        case Move::Attach: attach(move); break;
        case Move::Empty:
            if (ignoring_ == 0) slot.assignParameter({}, "");
            break;
        case Move::WriteParameter:
            slot.Parameter =
                move.c % 4 == 0 && ignoring_ == 0 ? RefPtr<VParameter>() : parameter(move.b);
            break;
        case Move::WriteSlot:
            if (move.c % 2 == 0)
                slot.InputClass = move.b % 3;
            else
                slot.Member = move.b % 2 == 0 ? "" : "part";
            break;
        case Move::DropSlot: dropSlot(number); break;
        default: return false;
    }
    isWiringKnown_ = false;
    return true;
}

/// Mostly to what comes before the object, so that most networks stay without cycles.
void Network::attach(const Move& move)
{
    const int slot = within(move.a, slots_.size());
    const int owner = slotOwners_[at(slot)];
    RefPtr<VParameter> shown = parameter(move.b);
    const bool mayCycle = move.c % 8 == 0;
    if (!mayCycle && shown->source && numberOf(shown->source) >= owner && owner > 0)
        shown = parameters_[at(outputs_[at(within(move.b, at(owner)))].front())];
    Quorl::VSlotContainer::attachParameter(shown, slots_[at(slot)], move.c % 8 == 1 ? "part" : "");
}

/// Inputs must not come or go at the level at which a walk is: of an object that is walked, the new
/// one stands at a level of its own.
void Network::newSlot(const Move& move)
{
    const int owner = within(move.a, objects_.size());
    const RefPtr<VObject> found = object(owner);
    if (!found || std::ranges::count(slotOwners_, owner) >= kMostInputs) return;
    const int count = static_cast<int>(slots_.size());
    const int side = move.b % 2 == 0 ? 1 : -1;
    const int level = isWalked(*found) ? side * (kLevelOfWalked + count) : move.b % kLevelsOfStart;
    const int flavour = move.b / kLevelsOfStart % 8;
    const char first = "abc"[move.b / kLevelsOfStart / 8 % 3];
    const std::string name = (flavour == 4 ? "qZelm::" : "") + (first + std::to_string(count));

    const bool isOwn = move.c == 0;
    const int producer = within(move.c - (isOwn ? 0 : 1), objects_.size());
    const RefPtr<VParameter> shown =
        isOwn ? parameters_[at(newParameter(name))]
              : parameters_[at(
                    outputs_[at(producer)][at(move.b % 2) % outputs_[at(producer)].size()])];
    const RefPtr<VSlot> slot = found->addParameter(name, level, shown, false);
    if (flavour == 5) slot->InputClass = 1;
    if (flavour == 6) slot->Member = "part";
    if (flavour == 7 && isOwn) shown->Localize();
    slots_.push_back(slot);
    slotOwners_.push_back(owner);
}

void Network::dropSlot(int number)
{
    const RefPtr<VObject> owner = object(slotOwners_[at(number)]);
    if (owner && !isWalked(*owner)) owner->removeParameter(slots_[at(number)]->Name);
}

void Network::leave(int number)
{
    if (number == 0 || !owned_[at(number)]) return;
    const RefPtr<VObject> leaving = std::exchange(owned_[at(number)], {});
    leaving->VManagedObject::remove();
}

bool Network::performOnAges(const Move& move)
{
    const RefPtr<VObject> found = object(move.a);
    switch (move.kind)
    {
        case Move::Touch: parameter(move.a)->touchValue(pool(move.b)); break;
        case Move::SetText:
            parameter(move.a)->setValueFromText("1", pool(move.b), "", true, {}, nullptr, nullptr);
            break;
        case Move::Locality: changeLocality(move); break;
        case Move::WriteParameterAge: {
            const RefPtr<Quorl::VValueBase> value = parameter(move.a)->getValue(pool(move.b), "");
            value->age() = anyAge(move.c, value->age());
            break;
        }
        case Move::WriteAge:
            if (found) found->age(pool(move.b)) = anyAge(move.c, found->age(pool(move.b)));
            break;
        case Move::WriteConnection:
            if (found) found->Slots->InputSetAge = anyAge(move.c, found->ConnectionAge());
            break;
        case Move::TouchState:
            if (found) found->myState(pool(move.b))->touch();
            break;
        case Move::WriteState:
            if (found) writeState(move);
            break;
        default: return false;
    }
    return true;
}

/// Some age that there is, or one beside it.
Ageable Network::anyAge(int from, const Ageable& present) const
{
    const RefPtr<VObject> other = object(from / 8);
    switch (from % 8)
    {
        case 0: return Ageable::Ooooold;
        case 1: return Ageable(0);
        case 2: return Ageable(present.stamp() - 1);
        case 3: return Ageable(present.stamp() + 1);
        case 4: return Ageable(Ageable::GlobalTime.stamp());
        case 5: return other ? other->LocalAge : present;
        case 6: return other ? other->ConnectionAge() : present;
        default: return parameter(from / 8)->defaultValue->age();
    }
}

void Network::writeState(const Move& move)
{
    const VObject& found = *object(move.a);
    const RefPtr<ValuePool>& where = pool(move.b);
    switch (move.c % 5)
    {
        case 0: found.setState(where, {}); break;
        case 1: found.setState(where, found.newState()); break;
        case 2: found.removeState(where); break;
        default: {
            Ageable& age = *found.myState(where);
            age = anyAge(move.c / 5, age);
        }
    }
}

void Network::changeLocality(const Move& move)
{
    VParameter& changed = *parameter(move.a);
    const RefPtr<ValuePool>& where = pool(move.b);
    switch (move.c % 5)
    {
        case 0: changed.Localize(); break;
        case 1: changed.Globalize(where); break;
        case 2: changed.local = !changed.local; break;
        case 3: changed.getLocalValue(where, "", true); break;
        default:
            if (where) where->removeVariable(parameter(move.a));
    }
}

bool Network::performOnObject(const Move& move)
{
    const RefPtr<VObject> found = object(move.a);
    if (!found) return false;
    switch (move.kind)
    {
        case Move::Ready: found->RequestProcessing = move.b % 3 != 0; break;
        case Move::Classes:
            if (!found->classes.insert(move.b % 3).second) found->classes.erase(move.b % 3);
            break;
        case Move::Release: release(move); break;
        case Move::WriteTrace: writeTrace(move); break;
        case Move::WriteExecutor: writeExecutor(move); break;
        case Move::Validator:
            if (move.b % 2 == 0)
                validators_[at(within(move.a, objects_.size()))] = new Quorl::VConnectionValidator;
            found->insertConnectionValidator(validators_[at(within(move.b, objects_.size()))]);
            break;
        case Move::Look:
            look(within(move.a, objects_.size()));
            if (found->Latest) recordTable(*found->Latest);
            break;
        case Move::Graph: transcript_.note("graph", found->ExecutionGraphHasChanged()); break;
        default: return false;
    }
    return true;
}

void Network::release(const Move& move)
{
    const bool isAll = move.c % 2 == 0;
    for (int number = 0; number < static_cast<int>(objects_.size()); ++number)
        if (const RefPtr<VObject> found = object(number);
            found && (isAll || number == within(move.a, objects_.size())))
            found->Current = WeakPtr<VRequest::ID>();
}

void Network::writeTrace(const Move& move)
{
    VObject& found = *object(move.a);
    const int number = within(move.b, evaluations_.size() + 1);
    const WeakPtr<VRequest::ID> id =
        at(number) < evaluations_.size() ? evaluations_[at(number)] : WeakPtr<VRequest::ID>();
    switch (move.c % 3)
    {
        case 0: found.Current = id; break;
        case 1: found.Previous = id; break;
        default: found.Latest = id;
    }
}

void Network::writeExecutor(const Move& move)
{
    const RefPtr<VObject> found = object(move.a);
    const RefPtr<VObject> other = object(move.b);
    Quorl::RequestExecutor& executor = found->Executor;
    switch (move.c % 6)
    {
        case 0: executor.Level = move.b % 6; break;
        case 1: executor.PreviousLevel = move.b % 6 - 1; break;
        case 2: executor.Max->Changes = move.b % 6; break;
        case 3: executor.reset(); break;
        case 4:
            if (other) executor.Max = other->Executor.Max;
            break;
        default:
            if (other) executor = other->Executor;
    }
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
