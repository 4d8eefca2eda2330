#include <tests/model/EvaluationModel.h>

#include <algorithm>
#include <array>
#include <cstdarg>
#include <cstdio>

namespace QuorlTest::Evaluation
{
namespace
{

std::string formatted(const char* format, std::va_list arguments)
{
    std::array<char, 1000> text{};
    std::vsnprintf(text.data(), text.size(), format, arguments);
    return text.data();
}

/// Counts a nesting down, also where an exception passes.
class Deeper
{
public:
    Deeper(int& depth, int step) : depth_(depth), step_(step) { depth_ += step_; }
    Deeper(const Deeper&) = delete;
    Deeper& operator=(const Deeper&) = delete;
    ~Deeper() { depth_ -= step_; }

private:
    int& depth_;
    const int step_;
};

void raise(long long& age, long long other)
{
    age = std::max(age, other);
}

} // namespace

void Model::say(const char* format, ...)
{
    std::va_list arguments;
    va_start(arguments, format);
    out += formatted(format, arguments);
    va_end(arguments);
}

void Model::sayIndented(const char* format, ...)
{
    std::va_list arguments;
    va_start(arguments, format);
    out += std::string(at(indent_), ' ') + formatted(format, arguments);
    va_end(arguments);
}

long long Model::ageOf(const Parameter& parameter, int pool) const
{
    const auto variable = parameter.variables.find(pool);
    return parameter.isLocal && variable != parameter.variables.end() ? variable->second
                                                                      : parameter.age;
}

bool Model::poll(const Ticket& ticket)
{
    if (*ticket.pollsLeft > 0) --*ticket.pollsLeft;
    return *ticket.pollsLeft == 0;
}

void Model::considerLevel(const Ticket& ticket, int level, int object, int caller)
{
    LevelTable& table = evaluations[at(ticket.id)];
    const auto entry = table.find(object);
    if (entry == table.end())
    {
        table[object] = {level, level, 1, caller, caller};
        return;
    }
    Level& known = entry->second;
    if (level < known.min)
    {
        known.min = level;
        known.minCaller = caller;
    }
    if (level > known.max)
    {
        known.max = level;
        known.maxCaller = caller;
    }
    ++known.count;
}

bool Model::request(int number, Ticket& ticket, double precision)
{
    Object& object = objects[at(number)];
    long long& myAge = age(number, ticket.pool);
    if (verbosity != 0)
    {
        const auto atFirstLevel = std::ranges::count_if(
            object.slots, [&](int slot) { return slots[at(slot)].level <= 0; });
        sayIndented(">>> \tVObject: %s::request(Request #, prec=%lg)\tt=%lld, (connected at "
                    "t=%lld, inputs=%d, outputs=%d)\n",
                    object.name.c_str(), precision, myAge, object.connection,
                    static_cast<int>(atFirstLevel), object.outputs);
    }
    if (object.inside == ticket.id)
    {
        if (verbosity != 0)
            sayIndented("   TOP: VObject[%s]: Recursive request, no action taken here!\n",
                        object.name.c_str());
        return true;
    }
    const long long ageBefore = myAge;
    const long long connectionBefore = object.connection;
    if (ticket.newestConnection < object.connection)
    {
        ticket.newestConnection = object.connection;
        ticket.newestConnectionObject = number;
    }
    if (object.inside >= 0)
    {
        say("VObject[%s]::request(): YIKES! Here already is a request (#) attached, can't have no "
            "more!!!\n",
            object.name.c_str());
        return true;
    }
    object.previous = object.latest;
    object.latest = object.inside = ticket.id;

    Walk walk;
    walk.newest = myAge;
    {
        const Deeper indented(indent_, 1);
        for (const int slot : object.slots)
            if (!visit(number, ticket, slots[at(slot)], walk)) break;
    }
    object.inside = -1;
    if (poll(ticket)) return false;

    if (verbosity > 2)
        sayIndented("      \tObject: %s indicated for %s\n", walk.acts ? "ACTION" : "NO action",
                    object.name.c_str());
    const auto state = object.states.find(ticket.pool);
    if (state != object.states.end() && state->second >= 1 && state->second < myAge)
    {
        walk.acts = true;
        walk.reason = "Object local state is old, object needs to update";
        if (verbosity != 0)
            sayIndented("Object Local State %lld is modified, but old\n", state->second);
    }
    if (verbosity > 3 && ticket.pool == kNoPool)
        say("%s: VOBJECT REQUEST WITHOUT GHOSTVALUES!\n", object.name.c_str());
    if (ageBefore < connectionBefore)
    {
        walk.acts = true;
        raise(walk.newest, object.connection);
        walk.reason = "Connections/Parameters have changed";
    }
    if (object.validatorAge < ticket.newestConnection)
    {
        object.validatorAge = ticket.newestConnection;
        object.taint = ticket.newestConnectionObject + 1;
    }
    if (!walk.acts)
    {
        events.push_back("must " + object.name);
        if (object.behaviour[kMust] == 0)
        {
            if (verbosity > 10) say("Object: %s NOT updated.\n", object.name.c_str());
            return false;
        }
    }
    return runUpdate(number, ticket, precision, walk);
}

bool Model::runUpdate(int number, Ticket& ticket, double precision, const Walk& walk)
{
    const std::string name = objects[at(number)].name;
    long long& myAge = age(number, ticket.pool);
    if (verbosity != 0)
    {
        sayIndented("**OBJECT UPDATE[QuorlTest::Evaluation::ScriptedObject]: Call %s->update() "
                    "newest input is %lld, current age is %lld ",
                    name.c_str(), walk.newest, myAge);
        if (walk.acts)
            sayIndented("... because an action happened: %s\n", walk.reason.c_str());
        else
            sayIndented("...because it must update\n");
        const int level = objects[at(number)].level;
        if (verbosity > 10)
            say("%*s[%d]  %s->update() T=%lld\n", level, "", level, name.c_str(), myAge);
    }
    const long long ageAtUpdate = myAge;
    const int outcome = objects[at(number)].behaviour[kOutcome];
    bool hasSucceeded = false;
    try
    {
        hasSucceeded = performUpdate(number, ticket, precision);
    }
    catch (const OutOfMemory&)
    {
        throw OutOfMemory{number};
    }
    catch (int status)
    {
        err += "EXCEPTION: " + name + "::update(): told to\n";
        if (status <= 4) return true;
        if (status != 5 && verbosity > 10) say("Object: %s NOT updated.\n", name.c_str());
        return false;
    }
    static_cast<void>(outcome);
    if (!hasSucceeded)
    {
        if (verbosity != 0)
            say("Object: %s update FAILED for t=%lld, it has t=%lld now.\n", name.c_str(),
                walk.newest, myAge);
        return false;
    }
    raise(myAge, walk.newest);
    if (verbosity != 0)
    {
        say("Object: %s update called successfully for newest input t=%lld, it has aged to "
            "t=%lld now.\n",
            name.c_str(), walk.newest, myAge);
        if (myAge != ageAtUpdate)
            say("      INFO: %s::update() changed from t=%lld to t=%lld now.\n", name.c_str(),
                ageAtUpdate, myAge);
    }
    return true;
}

bool Model::performUpdate(int number, Ticket& ticket, double precision)
{
    const Object& object = objects[at(number)];
    events.push_back("unlocked " + object.name);
    if (object.behaviour[kUnlocked] == 0) return false;
    events.push_back("function " + object.name);
    if (object.behaviour[kFunction] == 0) return false;
    events.push_back("update " + object.name + " " + std::to_string(precision));
    const std::vector<Move> moves = object.updates;
    for (const Move& move : moves) perform(move, &ticket);
    switch (objects[at(number)].behaviour[kOutcome])
    {
        case kFails: return false;
        case kSucceeds: return true;
        case kStatusModified: throw 3;
        case kStatusFailed: throw 5;
        case kStatusOther: throw 9;
        case kOutOfMemory: throw OutOfMemory{-1};
        default: throw Error();
    }
}

bool Model::visit(int number, Ticket& ticket, const Slot& slot, Walk& walk)
{
    const std::string name = objects[at(number)].name;
    const long long& myAge = age(number, ticket.pool);
    if (verbosity > 10) sayIndented("==> %s->%s [object input]\n", name.c_str(), slot.name.c_str());
    if (poll(ticket)) return false;
    if (slot.parameter < 0) return true;
    if (slot.inputClass != 0 && !objects[at(number)].classes.contains(slot.inputClass)) return true;
    if (slot.name.starts_with("qZelm::")) return true;

    const Parameter& parameter = parameters[at(slot.parameter)];
    const long long before = ageOf(parameter, ticket.pool);
    if (before > myAge)
    {
        if (verbosity > 2)
            sayIndented("  %s(t=%lld): ACTION: AHA! Input [%s(t=%lld)] is newer!\n", name.c_str(),
                        myAge, slot.name.c_str(), before);
        walk.acts = true;
        walk.reason = "Input " + slot.name + " is newer";
        raise(walk.newest, before);
    }
    if (verbosity > 10)
        sayIndented("  %s(t=%lld): [%s] has t=%lld (newest so far is %lld)\n", name.c_str(), myAge,
                    slot.name.c_str(), before, walk.newest);
    if (parameter.source < 0)
    {
        if (verbosity > 20) sayIndented("\tinput has no object associated...");
        if (before <= myAge) return true;
        walk.acts = true;
        walk.reason = "Pure Input " + slot.name + " is newer";
        if (verbosity != 0)
            sayIndented("  ACTION: non-object related input [%s] is newer than %lld, should update "
                        "object to %lld...\n",
                        slot.name.c_str(), myAge, before);
        raise(walk.newest, before);
        return true;
    }
    const Object& source = objects[at(parameter.source)];
    const long long sourceAge = age(parameter.source, ticket.pool);
    if (verbosity > 4 && before > sourceAge)
        sayIndented("   \t\t      %s(t=%lld) input [%s(t=%lld)] as owned by object %s(t=%lld)\t"
                    "[member '%s']"
                    " - REQUIRES UPDATE\n",
                    name.c_str(), myAge, slot.name.c_str(), before, source.name.c_str(), sourceAge,
                    slot.member.c_str());
    if (!source.isReady)
        say("Vobject[%s]::request(): skip object, it's not yet ready.\n", source.name.c_str());
    else if (source.inside == ticket.id)
    {
        if (verbosity > 4)
            sayIndented("   (Recursive request in %s, stopping here, no action from this slot)\n",
                        source.name.c_str());
    }
    else
        ask(number, ticket, slot, parameter, walk);
    return true;
}

void Model::ask(int number, Ticket& ticket, const Slot& slot, const Parameter& parameter,
                Walk& walk)
{
    Object& object = objects[at(number)];
    Object& source = objects[at(parameter.source)];
    considerLevel(ticket, object.level + 1, parameter.source, number);
    source.level = object.level + 1;
    const long long& myAge = age(number, ticket.pool);
    const int asked = parameter.source; // whom a connection made meanwhile does not change
    if (request(asked, ticket, 1.0))
    {
        const long long now = ageOf(parameter, ticket.pool);
        walk.acts = true;
        raise(walk.newest, now);
        if (verbosity > 5)
            sayIndented("%s: Input ACTION Object '%s' was modified to %lld (newest input %lld), "
                        "object is at %lld now\n",
                        object.name.c_str(), source.name.c_str(), now, walk.newest,
                        age(asked, ticket.pool));
        walk.reason = "Input Object " + source.name +
                      "->request() returned true, it provides input param " + slot.name;
    }
    const long long sourceAge = age(asked, ticket.pool);
    if (sourceAge > myAge)
    {
        walk.acts = true;
        raise(walk.newest, sourceAge);
        if (verbosity > 5)
            sayIndented("Input ACTION %s::request(t=%lld) -> input %s is t=%lld, need to update "
                        "because object is newer.\n",
                        object.name.c_str(), myAge, slot.name.c_str(), sourceAge);
        walk.reason = "Input " + slot.name + " is newer";
    }
    else if (verbosity > 20)
        sayIndented("%s(t=%lld): Parameter '%s(t=%lld)' remained constant, so no update .\n",
                    object.name.c_str(), myAge, source.name.c_str(), sourceAge);
}

bool Model::graphHasChanged(const Object& object)
{
    if (object.previous == object.latest)
    {
        out += "bool\tVTraceRequestID::ExecutionGraphHasChanged(): Same execution graph.\n";
        return false;
    }
    if (object.previous < 0 || object.latest < 0) return true;
    const LevelTable& before = evaluations[at(object.previous)];
    return std::ranges::any_of(evaluations[at(object.latest)], [&](const auto& entry) {
        const auto known = before.find(entry.first);
        return known == before.end() || known->second.min != entry.second.min ||
               known->second.max != entry.second.max;
    });
}

void Model::touch(Parameter& parameter, int pool)
{
    const auto variable = parameter.variables.find(pool);
    const bool isOwn = parameter.isLocal && variable != parameter.variables.end();
    (isOwn ? variable->second : parameter.age) = ++clock;
}

void Model::attach(Slot& slot, int parameter, const std::string& member)
{
    if (slot.parameter == parameter && slot.member == member) return;
    slot.parameter = parameter;
    slot.member = member;
    ++clock;                                            // of the slot
    if (parameters[at(parameter)].source >= 0) ++clock; // of the output
    Object& object = objects[at(slot.object)];
    object.connection = ++clock;
    object.taint = slot.object + 1;
}

void Model::askInside(const Move& move, Ticket* ticket)
{
    const int mode = ticket ? move.c % 3 : 0;
    if (mode == 1) // with the ticket itself
    {
        request(move.a, *ticket, 0.5);
        return;
    }
    if (mode == 2) // with a copy
    {
        Ticket copy = *ticket;
        copy.newestConnection = -1;
        copy.newestConnectionObject = -1;
        request(move.a, copy, 0.5);
        if (ticket->newestConnection < copy.newestConnection)
        {
            ticket->newestConnection = copy.newestConnection;
            ticket->newestConnectionObject = copy.newestConnectionObject;
        }
        return;
    }
    int never = -1;
    Ticket another{static_cast<int>(evaluations.size()), move.b, &never};
    evaluations.emplace_back();
    request(move.a, another, 0.5);
}

void Model::perform(const Move& move, Ticket* ticket)
{
    if (--fuel < 0) return;
    switch (move.kind)
    {
        case Move::Request: askInside(move, ticket); break;
        case Move::Touch: touch(parameters[at(move.a)], move.b); break;
        case Move::SetText: {
            Parameter& parameter = parameters[at(move.a)];
            if (parameter.isLocal && move.b != kNoPool)
                parameter.variables.try_emplace(move.b, clock); // a new value is of now
            try
            {
                for (const Move& reaction : std::vector<Move>(parameter.observer))
                    perform(reaction, nullptr);
            }
            catch (...)
            {
                touch(parameter, move.b); // the value is another one all the same
                throw;
            }
            touch(parameter, move.b);
            break;
        }
        case Move::Attach: attach(slots[at(move.a)], move.b, memberOf(move)); break;
        case Move::Empty:
            if (slots[at(move.a)].parameter < 0) break;
            slots[at(move.a)].parameter = -1;
            slots[at(move.a)].member.clear();
            ++clock;
            break;
        case Move::TouchState: objects[at(move.a)].states[move.b] = ++clock; break;
        case Move::Ready: objects[at(move.a)].isReady = move.b % 2 == 1; break;
        case Move::Release: objects[at(move.a)].inside = -1; break;
        case Move::Graph:
            events.push_back(graphHasChanged(objects[at(move.a)]) ? "changed" : "unchanged");
            break;
        case Move::Cancel:
            if (ticket) *ticket->pollsLeft = 0;
            break;
        default: break; // the others are done from outside alone
    }
}

} // namespace QuorlTest::Evaluation
