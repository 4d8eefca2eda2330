#include <tests/model/EvaluationGame.h>

#include <quorl/objects/VObjectIsOutOfMemory.h>
#include <tests/model/At.h>

#include <cstdint>
#include <set>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

/// The moves, on the kernel and on the model.
namespace QuorlTest::Evaluation
{

using Quorl::RefPtr;
using Quorl::VObject;
using Quorl::VRequest;

namespace
{

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
            auto& classes = objects_[at(move.a)]->classes;
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

} // namespace QuorlTest::Evaluation
