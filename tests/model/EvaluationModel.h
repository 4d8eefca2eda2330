#pragma once

#include <tests/model/At.h>

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

/// Evaluation in plain words: what a request does, step by step, on numbers in vectors. Slow, and
/// meant to be read beside the text of the log lines.
namespace QuorlTest::Evaluation
{

/// What is done to a network, from outside or inside of an update. Numbers are brought into range
/// by whoever performs it.
struct Move
{
    enum Kind : int
    {
        Request,    ///< object `a` in pool `b`; cancelled after `c` polls unless that is 0
        Touch,      ///< parameter `a` in pool `b`
        SetText,    ///< the same, telling observers
        Attach,     ///< slot `a` to parameter `b`, or to a member of it if `c` says so
        Empty,      ///< slot `a`
        TouchState, ///< of object `a` in pool `b`
        Ready,      ///< whether object `a` is: `b`
        Release,    ///< object `a` from an evaluation that was left inside
        Graph,      ///< whether the last two evaluations of object `a` differ
        Cancel,     ///< the evaluation that is under way
        Behave,     ///< how object `a` does `b`: `c`
        InUpdate,   ///< the move that follows is done by object `a` in its updates
        InObserver, ///< the same by an observer of parameter `a`
        Forget,     ///< what object `a` does in its updates
        NewInput,   ///< of object `a` at a level of `b`, of the kind `c`
        NewOutput,  ///< of object `a`, local if `b` is odd
        TakeClass,  ///< object `a` takes inputs of class `b`, or does not any more
        NewObject,
        kKinds,
    };

    Kind kind;
    int a;
    int b;
    int c;
};

/// The aspects of `Behave`.
enum Aspect : int
{
    kOutcome,  ///< of `update`
    kMust,     ///< whether it must update
    kUnlocked, ///< of `unsychronized_update`
    kFunction, ///< of an update function
    kAspects,
};

/// The outcomes of an update beyond false and true.
enum Outcome : int
{
    kFails,
    kSucceeds,
    kStatusModified, ///< throws a status of 3
    kStatusFailed,   ///< of 5
    kStatusOther,    ///< of 9
    kOutOfMemory,
    kError, ///< throws anything else
    kOutcomes,
};

inline constexpr int kNoPool = 0; ///< the others follow
inline constexpr int kPools = 3;
inline constexpr int kFuel = 40; ///< moves that are done inside of one

struct Level
{
    int min;
    int max;
    int count;
    int minCaller;
    int maxCaller;
    friend bool operator==(const Level&, const Level&) = default;
};

using LevelTable = std::map<int, Level>; ///< by the number of the object

struct Parameter
{
    std::string name;
    int source = -1; ///< an object
    bool isLocal = false;
    long long age = 0;
    std::map<int, long long> variables; ///< ages by pool
    std::vector<Move> observer;         ///< what it does
};

struct Slot
{
    std::string name;
    int object;
    int level;
    int parameter; ///< -1 for none
    int inputClass;
    std::string member{};
};

struct Object
{
    std::string name;
    std::vector<int> slots; ///< by level, then by name
    int outputs = 0;
    bool isReady = true;
    std::map<int, long long> ages; ///< by pool
    std::map<int, long long> states;
    long long connection = 0;
    std::set<int> classes;
    int level = 0; ///< depth in the evaluation that passed last
    int behaviour[kAspects] = {kSucceeds, 0, 1, 1};
    std::vector<Move> updates;

    int inside = -1; ///< the evaluation that is inside
    int latest = -1;
    int previous = -1;

    long long validatorAge = 0;
    int taint = 0; ///< an object's number, from 1; 0 for none, -1 for none of a request
};

/// One ticket.
struct Ticket
{
    int id;
    int pool;
    int* pollsLeft; ///< of the whole evaluation; -1 for never
    long long newestConnection = -1;
    int newestConnectionObject = -1;
};

struct OutOfMemory
{
    int object;
};
struct Error
{
};

class Model
{
public:
    /// \return what a request answers.
    bool request(int object, Ticket& ticket, double precision);

    /// Does any move but those that make something. `ticket` is that of the update around it.
    void perform(const Move& move, Ticket* ticket);

    long long& age(int object, int pool)
    {
        return objects[at(object)].ages.try_emplace(pool, -1).first->second;
    }
    long long ageOf(const Parameter& parameter, int pool) const;

    /// Which member of a parameter an attachment shows; empty for the whole.
    static std::string memberOf(const Move& move) { return move.c % 4 == 1 ? "part" : ""; }

    std::vector<Object> objects;
    std::vector<Parameter> parameters;
    std::vector<Slot> slots;
    std::vector<LevelTable> evaluations; ///< by the number of the evaluation
    std::vector<std::string> events;
    std::string out;
    std::string err;
    long long clock = 0;
    int verbosity = 0;
    int fuel = 0;

private:
    struct Walk
    {
        bool acts = false;
        std::string reason;
        long long newest;
    };

    bool visit(int object, Ticket& ticket, const Slot& slot, Walk& walk);
    void ask(int object, Ticket& ticket, const Slot& slot, const Parameter& parameter, Walk& walk);
    bool runUpdate(int object, Ticket& ticket, double precision, const Walk& walk);
    bool performUpdate(int object, Ticket& ticket, double precision);
    bool poll(const Ticket& ticket);
    void considerLevel(const Ticket& ticket, int level, int object, int caller);
    bool graphHasChanged(const Object& object);
    void touch(Parameter& parameter, int pool);
    void attach(Slot& slot, int parameter, const std::string& member);
    void askInside(const Move& move, Ticket* ticket);

    [[gnu::format(printf, 2, 3)]] void say(const char* format, ...);
    [[gnu::format(printf, 2, 3)]] void sayIndented(const char* format, ...);

    int indent_ = 0;
};

} // namespace QuorlTest::Evaluation
