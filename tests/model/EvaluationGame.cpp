#include <tests/model/EvaluationGame.h>

#include <quorl/objects/VObjectIsOutOfMemory.h>

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace QuorlTest::Evaluation
{

using Quorl::Ageable;
using Quorl::RefPtr;
using Quorl::VObject;
using Quorl::VParameter;
using Quorl::VRequest;
using Quorl::VSlot;

namespace
{

constexpr int kMostObjects = 6;
constexpr int kMostInputs = 5;
constexpr int kMostActs = 4;

/// With a # for what stands between `before` and the next of `ends`, wherever it does.
std::string masked(std::string text, const std::string& before, const char* ends)
{
    for (std::size_t place = text.find(before); place != std::string::npos;
         place = text.find(before, place))
    {
        place += before.size();
        text.replace(place, text.find_first_of(ends, place) - place, "#");
    }
    return text;
}

/// Without what changes from run to run.
std::string withoutNumbers(const std::string& text)
{
    return masked(masked(text, "::request(Request ", ","), "Here already is a request (", ")");
}

} // namespace

/// Does in its updates what its game says.
class ScriptedObject final : public VObject
{
public:
    ScriptedObject(const std::string& givenName, Game& game, int number)
        : VObject(givenName, 0, {}), game_(game), number_(number)
    {
        insertUpdateFunction(&runFunction);
        enableRequestProcessing();
    }

    bool must_update(const VRequest& /*request*/, double /*precision*/) const override
    {
        return note("must") && does(kMust);
    }
    bool unsychronized_update(VRequest& /*request*/, double /*precision*/) override
    {
        return note("unlocked") && does(kUnlocked);
    }
    bool update(VRequest& request, double precision) override
    {
        note("update", " " + std::to_string(precision));
        const std::vector<Move> moves = model().updates;
        for (const Move& move : moves) game_.perform(move, dynamic_cast<CountedRequest*>(&request));
        switch (model().behaviour[kOutcome])
        {
            case kFails: return false;
            case kSucceeds: return true;
            case kStatusModified: throw ExecutionStatus(3, "told to");
            case kStatusFailed: throw ExecutionStatus(5, "told to");
            case kStatusOther: throw ExecutionStatus(9, "told to");
            case kOutOfMemory: throw Tolmen::Cache::OutOfMemory();
            default: throw std::runtime_error("told to");
        }
    }

private:
    static bool runFunction(VObject* object, VRequest& /*request*/, double /*precision*/)
    {
        const auto* const self = dynamic_cast<ScriptedObject*>(object);
        return self->note("function") && self->does(kFunction);
    }

    const Object& model() const { return game_.model_.objects[at(number_)]; }
    bool does(int aspect) const { return model().behaviour[aspect] != 0; }
    bool note(const std::string& what, const std::string& detail = "") const
    {
        game_.events_.push_back(what + " " + getName() + detail);
        return true;
    }

    Game& game_;
    const int number_;
};

/// Does what its game says when its parameter is set.
class Follower final : public Quorl::VInputBase
{
public:
    Follower(const RefPtr<VParameter>& followed, Game& game, int number)
        : VInputBase(followed), game_(game), number_(number)
    {
    }
    void valueChanged(const RefPtr<Quorl::VValueBase>&, const Quorl::WeakPtr<Quorl::ValuePool>&,
                      const Quorl::ValueNotifierList*, const Quorl::ValueMap*) override
    {
        const std::vector<Move> moves = game_.model_.parameters[at(number_)].observer;
        for (const Move& move : moves) game_.perform(move, nullptr);
    }
    bool SyncFromContextValue(const RefPtr<Quorl::ValuePool>&, const std::string&) override
    {
        return false;
    }

private:
    Game& game_;
    const int number_;
};

Game::Game(int objects, int verbosity) : verbosity_(verbosity)
{
    model_.verbosity = verbosity;
    pools_.emplace_back();
    for (int number = 1; number <= kPools; ++number)
        pools_.emplace_back(new Quorl::ValuePool("game " + std::to_string(number)));
    for (int number = 0; number < objects; ++number) newObject();
}

Game::~Game()
{
    for (const auto& object : objects_) object->VManagedObject::remove();
}

// What is made: it is made on the kernel, whose ages the model takes over

void Game::newObject()
{
    if (objects_.size() >= kMostObjects) return;
    const int number = static_cast<int>(objects_.size());
    const RefPtr<ScriptedObject> object(
        new ScriptedObject("o" + std::to_string(number), *this, number));
    objects_.push_back(object);
    numbers_[object->ID] = number;
    validators_.emplace_back(new Quorl::VConnectionValidator);
    object->insertConnectionValidator(validators_.back());
    model_.objects.emplace_back();
    model_.objects.back().name = object->getName();
    model_.objects.back().ages[kNoPool] = object->age({}).stamp();
    model_.objects.back().validatorAge = validators_.back()->stamp();
    newOutput(number, number % 2 == 1);
    newInput(number, 0, 0);
    newInput(number, 1, 0);
}

int Game::newParameter(const RefPtr<VParameter>& parameter, int source, bool isLocal)
{
    const int number = static_cast<int>(parameters_.size());
    parameters_.push_back(parameter);
    Parameter model;
    model.name = parameter->name;
    model.source = source;
    model.isLocal = isLocal;
    model.age = parameter->defaultValue->age().stamp();
    model_.parameters.push_back(model);
    if (isLocal) parameter->Localize();
    const RefPtr<Follower> follower(new Follower(parameter, *this, number));
    follower->activateNotification();
    followers_.push_back(follower);
    return number;
}

void Game::newOutput(int number, bool isLocal)
{
    Object& model = model_.objects[at(number)];
    if (model.outputs >= 2) return;
    const std::string name = "out" + std::to_string(model.outputs++);
    const RefPtr<VParameter> parameter(new Quorl::VValueParameter<double>(
        RefPtr<Quorl::VValue<double>>(new Quorl::VValue<double>(0.0)), name));
    objects_[at(number)]->registerOutput(parameter, name);
    newParameter(parameter, number, isLocal);
    model.connection = objects_[at(number)]->ConnectionAge().stamp();
    model_.clock = Ageable::GlobalTime.stamp();
}

void Game::newInput(int number, int level, int kind)
{
    Object& model = model_.objects[at(number)];
    if (model.slots.size() >= kMostInputs) return;
    const bool isPassedOver = kind == 1;
    const std::string name =
        (isPassedOver ? "qZelm::in" : "in") + std::to_string(model.slots.size());
    const RefPtr<VParameter> parameter(new Quorl::VValueParameter<double>(
        RefPtr<Quorl::VValue<double>>(new Quorl::VValue<double>(0.0)), name));
    const RefPtr<VSlot> slot = objects_[at(number)]->addParameter(name, level, parameter, false);
    slot->InputClass = kind > 2 ? kind - 2 : 0;
    const bool isLocal = kind == 2;
    const int shown = newParameter(parameter, -1, isLocal);
    slots_.push_back(slot);
    model_.slots.push_back({name, number, level, shown, slot->InputClass});
    model.slots.push_back(static_cast<int>(slots_.size()) - 1);
    std::ranges::sort(model.slots, {}, [&](int index) {
        const Slot& entry = model_.slots[at(index)];
        return std::pair(entry.level, entry.name);
    });
    model.connection = objects_[at(number)]->ConnectionAge().stamp();
    model.taint = numberOf(validators_[at(number)]->Taint) + 1;
    model_.clock = Ageable::GlobalTime.stamp();
}

/// \return whether the move is made of one that was recorded before.
bool Game::takesNext(const Move& move)
{
    if (move.kind == Move::InUpdate || move.kind == Move::InObserver)
    {
        recorder_ = move;
        return true;
    }
    const Move recorder = std::exchange(recorder_, Move{Move::kKinds, 0, 0, 0});
    if (recorder.kind == Move::kKinds) return false;
    std::vector<Move>& acts = recorder.kind == Move::InUpdate
                                  ? model_.objects[at(recorder.a)].updates
                                  : model_.parameters[at(recorder.a)].observer;
    if (acts.size() < kMostActs) acts.push_back(move);
    return true;
}

void Game::make(const Move& move)
{
    Object& object = model_.objects[at(move.a % static_cast<int>(model_.objects.size()))];
    switch (move.kind)
    {
        case Move::Behave: object.behaviour[move.b] = move.c; break;
        case Move::Forget: object.updates.clear(); break;
        case Move::NewInput: newInput(move.a, move.b, move.c); break;
        case Move::NewOutput: newOutput(move.a, move.b % 2 == 1); break;
        case Move::NewObject: newObject(); break;
        case Move::TakeClass: {
            std::set<std::int32_t>& classes = objects_[at(move.a)]->classes;
            if (!classes.insert(move.b).second) classes.erase(move.b);
            object.classes = {classes.begin(), classes.end()};
            break;
        }
        default: break;
    }
}

/// Brings all numbers of a move into range.
Move Game::brought(const Move& move) const
{
    const auto within = [](int number, std::size_t count) {
        return static_cast<int>(static_cast<unsigned>(number) % count);
    };
    Move result = move;
    result.b = within(move.b, pools_.size());
    switch (move.kind)
    {
        case Move::Touch:
        case Move::SetText:
        case Move::InObserver: result.a = within(move.a, parameters_.size()); break;
        case Move::Attach:
            result.a = within(move.a, slots_.size());
            result.b = within(move.b, parameters_.size());
            break;
        case Move::Empty: result.a = within(move.a, slots_.size()); break;
        case Move::Behave:
            result.a = within(move.a, objects_.size());
            result.b = within(move.b, kAspects);
            result.c = within(move.c, result.b == kOutcome ? kOutcomes : 2);
            break;
        case Move::NewInput:
            result.a = within(move.a, objects_.size());
            result.c = within(move.c, 5);
            break;
        case Move::TakeClass: [[fallthrough]];
        default:
            result.a = within(move.a, objects_.size());
            result.c = within(move.c, 12);
            break;
    }
    return result;
}

// The same move on the kernel

void Game::askInside(const Move& move, CountedRequest* ticket)
{
    VObject& object = *objects_[at(move.a)];
    const int mode = ticket ? move.c % 3 : 0;
    if (mode == 1)
    {
        object.init_request(*ticket, 0.5);
        return;
    }
    if (mode == 2)
    {
        CountedRequest copy(*ticket);
        object.init_request(copy, 0.5);
        ticket->updateFrom(copy);
        return;
    }
    int never = -1;
    CountedRequest another(pools_[at(move.b)], never);
    object.init_request(another, 0.5);
}

void Game::perform(const Move& move, CountedRequest* ticket)
{
    if (--fuel_ < 0) return;
    const RefPtr<Quorl::ValuePool>& pool = pools_[at(move.b % (kPools + 1))];
    switch (move.kind)
    {
        case Move::Request: askInside(move, ticket); break;
        case Move::Touch: parameters_[at(move.a)]->touchValue(pool); break;
        case Move::SetText:
            parameters_[at(move.a)]->setValueFromText("1", pool, "", true, {}, nullptr, nullptr);
            break;
        case Move::Attach:
            Quorl::VSlotContainer::attachParameter(parameters_[at(move.b)], slots_[at(move.a)],
                                                   Model::memberOf(move));
            break;
        case Move::Empty: slots_[at(move.a)]->assignParameter({}, ""); break;
        case Move::TouchState: objects_[at(move.a)]->myState(pool)->touch(); break;
        case Move::Ready: objects_[at(move.a)]->RequestProcessing = move.b % 2 == 1; break;
        case Move::Release:
            objects_[at(move.a)]->removeRequest(VRequest(RefPtr<Quorl::ValuePool>(), false));
            break;
        case Move::Graph:
            events_.emplace_back(objects_[at(move.a)]->ExecutionGraphHasChanged() ? "changed"
                                                                                  : "unchanged");
            break;
        case Move::Cancel:
            if (ticket) ticket->pollsLeft = 0;
            break;
        default: break;
    }
}

std::string Game::top(const Move& move)
{
    try
    {
        if (move.kind != Move::Request)
        {
            perform(move, nullptr);
            return "done";
        }
        int polls = move.c > 0 ? move.c : -1;
        CountedRequest ticket(pools_[at(move.b)], polls);
        const bool answer = objects_[at(move.a)]->init_request(ticket, 2.0);
        return std::string(answer ? "true" : "false") + " newest " +
               std::to_string(ticket.NewestConnection.stamp()) + " of " +
               std::to_string(numberOf(ticket.NewestConnectionObject));
    }
    catch (const Quorl::VObjectIsOutOfMemory& error)
    {
        return "out of memory in " + std::to_string(numberOf(error.Object->ID));
    }
    catch (const std::runtime_error&)
    {
        return "error";
    }
}

std::string Game::topOfModel(const Move& move)
{
    try
    {
        if (move.kind != Move::Request)
        {
            model_.perform(move, nullptr);
            return "done";
        }
        int polls = move.c > 0 ? move.c : -1;
        Ticket ticket{static_cast<int>(model_.evaluations.size()), move.b, &polls};
        model_.evaluations.emplace_back();
        const bool answer = model_.request(move.a, ticket, 2.0);
        return std::string(answer ? "true" : "false") + " newest " +
               std::to_string(ticket.newestConnection) + " of " +
               std::to_string(ticket.newestConnectionObject);
    }
    catch (const OutOfMemory& error)
    {
        return "out of memory in " + std::to_string(error.object);
    }
    catch (const Error&)
    {
        return "error";
    }
}

bool Game::play(const std::vector<Move>& moves)
{
    for (const Move& given : moves)
    {
        const Move move = brought(given);
        if (takesNext(move)) continue;
        make(move);
        fuel_ = model_.fuel = kFuel;
        ++fuel_, ++model_.fuel; // the move itself
        VObject::VERBOSE_REQUEST = verbosity_;
        const std::string answer = top(move);
        VObject::VERBOSE_REQUEST = 0;
        const std::string said = withoutNumbers(out_.take());
        const std::string complained = err_.take();
        const std::string expected = topOfModel(move);
        expect("the answer", answer, expected);
        expect("what was printed", said, std::exchange(model_.out, ""));
        expect("what was complained of", complained, std::exchange(model_.err, ""));
        compare();
        if (!difference_.empty()) return false;
    }
    return true;
}

void Game::expect(const std::string& what, const std::string& found, const std::string& wanted)
{
    if (found == wanted || !difference_.empty()) return;
    difference_ = what + " is\n" + found + "\nand by the model\n" + wanted;
}

void Game::expect(const std::string& what, long long found, long long wanted)
{
    if (found != wanted) expect(what, std::to_string(found), std::to_string(wanted));
}

int Game::numberOf(int serial) const
{
    const auto entry = numbers_.find(serial);
    return entry == numbers_.end() ? -1 : entry->second;
}

void Game::compare()
{
    const auto lines = [](const std::vector<std::string>& events) {
        std::string text;
        for (const std::string& event : events) text += event + "\n";
        return text;
    };
    expect("what ran", lines(std::exchange(events_, {})), lines(std::exchange(model_.events, {})));
    expect("the clock", Ageable::GlobalTime.stamp(), model_.clock);
    for (std::size_t number = 0; number < objects_.size(); ++number)
        compareObject(static_cast<int>(number));
    for (std::size_t number = 0; number < parameters_.size(); ++number)
        for (int pool = 0; pool <= kPools; ++pool)
            expect("the age of parameter " + std::to_string(number) + " in pool " +
                       std::to_string(pool),
                   parameters_[number]->age(pools_[at(pool)]).stamp(),
                   model_.ageOf(model_.parameters[number], pool));
}

void Game::compareObject(int number)
{
    const VObject& object = *objects_[at(number)];
    const Object& model = model_.objects[at(number)];
    const std::string name = " of " + model.name;
    for (int pool = 0; pool <= kPools; ++pool)
        expect("the age" + name + " in pool " + std::to_string(pool),
               object.age(pools_[at(pool)]).stamp(), model_.age(number, pool));
    expect("the connection age" + name, object.ConnectionAge().stamp(), model.connection);
    expect("the depth" + name, object.Executor.Level, model.level);
    expect("the age of the validator" + name, validators_[at(number)]->stamp(), model.validatorAge);
    expect("the taint" + name, numberOf(validators_[at(number)]->Taint) + 1, model.taint);
    expect("whether an evaluation is inside" + name, static_cast<bool>(object.Current),
           model.inside >= 0);
    compareTables("of the latest evaluation" + name, object.Latest, model.latest);
    compareTables("of the evaluation before" + name, object.Previous, model.previous);
    expect("the requests inside" + name, object.RequestCounter.value(), 0);
    expect("the updates inside" + name, object.UpdateCounter.value(), 0);
}

void Game::compareTables(const std::string& whose, const RefPtr<VRequest::ID>& id, int evaluation)
{
    expect("whether there is a table " + whose, static_cast<bool>(id), evaluation >= 0);
    if (!id || evaluation < 0) return;
    LevelTable found;
    for (const auto& [serial, level] : id->levels())
        found[numberOf(serial)] = {level.MinLevel, level.MaxLevel, level.Count,
                                   numberOf(level.MinCaller), numberOf(level.MaxCaller)};
    const auto text = [](const LevelTable& table) {
        std::string lines;
        for (const auto& [object, level] : table)
            lines += std::to_string(object) + ": " + std::to_string(level.min) + " to " +
                     std::to_string(level.max) + ", " + std::to_string(level.count) +
                     " times, from " + std::to_string(level.minCaller) + " and " +
                     std::to_string(level.maxCaller) + "\n";
        return lines;
    };
    if (found != model_.evaluations[at(evaluation)])
        expect("the table " + whose, text(found), text(model_.evaluations[at(evaluation)]));
}

} // namespace QuorlTest::Evaluation
