#include <tests/model/WalkNetwork.h>

#include <quorl/foundation/Cache.h>
#include <quorl/services/Vprintf.h>
#include <tests/model/At.h>
#include <tests/model/EvaluationModel.h>

#include <algorithm>
#include <stdexcept>
#include <utility>

/// How a network is made and played on, and what objects do meanwhile.
namespace QuorlTest::Walks
{

using Quorl::RefPtr;
using Quorl::ValuePool;
using Quorl::VObject;
using Quorl::VParameter;
using Quorl::VRequest;
using Quorl::WeakPtr;
using Quorl::WeakVObjectPtr;

namespace
{

constexpr int kFuel = 24;    // moves that are done inside of one
constexpr int kMostActs = 4; // in a hook

Network* theNetwork = nullptr; // that is being played on

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
    if (move.kind == Move::NewObject) return newObject(move.a, move.b != 0);
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

void Network::newObject(int kind, bool hasValidator)
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
    if (hasValidator) made->insertConnectionValidator(validators_.back());
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
        case Move::WriteLentState:
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

bool Network::outcome(int which)
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

// Whatever can be done outside and inside

void Network::perform(const Move& move, VRequest* ticket)
{
    if (--fuel_ < 0) return;
    if (performOnWiring(move) || performOnAges(move) || performOnObject(move)) return;
    performOnRequest(move, ticket);
}

} // namespace QuorlTest::Walks
