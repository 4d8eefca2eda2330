#pragma once

#include <tests/model/Moves.h>

#include <cstddef>
#include <vector>

/// What is done to a network that is walked, from outside or inside of a walk.
namespace QuorlTest::Walks
{

/// Numbers are brought into range by whoever performs a move.
struct MoveKinds
{
    enum Kind : int
    {
        // By which a network is made
        NewObject, ///< of the kind `a`; `b` is whether with a validator
        NewSlot, ///< of object `a`, that shows output `c` - 1 of the network or its own; `b` is how
        Behave,  ///< aspect `b` of object `a`: `c`
        InHook, ///< the move that follows is done by object `a` in its hook `b`, at each `c`th time

        // By which it is walked
        Request, ///< object `a` in pool `b`, as `c` says
        Repeat,  ///< the last request, by a new one like it; `a` times
        Again,   ///< the last request itself, at object `a`
        Copied,  ///< a copy of it, at object `a`

        // By which it changes
        Touch,             ///< parameter `a` in pool `b`
        SetText,           ///< the same, telling observers
        Attach,            ///< slot `a` to parameter `b`
        Empty,             ///< slot `a`
        WriteParameter,    ///< of slot `a`, which shows parameter `b`, or none, without being told
        WriteSource,       ///< of parameter `a`: object `b` or none
        WriteSlot,         ///< a field of slot `a`
        WriteAge,          ///< of object `a` in pool `b`
        WriteParameterAge, ///< of parameter `a` in pool `b`
        WriteConnection,   ///< the connection age of object `a`
        TouchState,        ///< of object `a` in pool `b`
        WriteState,        ///< the same: its age, or whether there is one
        WriteLentState,    ///< the same, by a handle that was lent once
        Ready,             ///< whether object `a` is
        Locality,          ///< of parameter `a`
        Classes,           ///< object `a` takes inputs of class `b`, or does not any more
        Release,           ///< object `a` from an evaluation that is inside, or all objects
        WriteTrace,        ///< of object `a`
        WriteExecutor,     ///< of object `a`
        DropSlot,          ///< slot `a`
        Leave,             ///< object `a` leaves the registry, and its owners
        Verbosity,         ///< of requests
        Listen,            ///< to what is measured, or not any more
        Validator,         ///< another one of object `a`
        Function,          ///< `b` is run by object `a` ahead of its update
        ChangeTicket,      ///< of the request under way, or the last one
        Cancel,            ///< the request under way
        Throw,             ///< `c` tells what; inside alone
        Look,              ///< at object `a`
        Graph,             ///< whether the last two evaluations of object `a` differ
        kKinds,
    };

    static constexpr const char* kNames[] = {"NewObject",
                                             "NewSlot",
                                             "Behave",
                                             "InHook",
                                             "Request",
                                             "Repeat",
                                             "Again",
                                             "Copied",
                                             "Touch",
                                             "SetText",
                                             "Attach",
                                             "Empty",
                                             "WriteParameter",
                                             "WriteSource",
                                             "WriteSlot",
                                             "WriteAge",
                                             "WriteParameterAge",
                                             "WriteConnection",
                                             "TouchState",
                                             "WriteState",
                                             "WriteLentState",
                                             "Ready",
                                             "Locality",
                                             "Classes",
                                             "Release",
                                             "WriteTrace",
                                             "WriteExecutor",
                                             "DropSlot",
                                             "Leave",
                                             "Verbosity",
                                             "Listen",
                                             "Validator",
                                             "Function",
                                             "ChangeTicket",
                                             "Cancel",
                                             "Throw",
                                             "Look",
                                             "Graph"};
};

using Move = MoveOf<MoveKinds>;
using History = std::vector<Move>;

/// A number of a move, as the number of one of so many.
inline int within(int number, std::size_t count)
{
    return static_cast<int>(static_cast<std::size_t>(number) % count);
}

/// Of an object, by which of the virtual operations it has of its own.
enum ObjectKind : int
{
    kUpdates,       ///< `update` alone
    kBare,          ///< none
    kMustUpdate,    ///< and `must_update`
    kIgnores,       ///< and `ignoreInput`
    kTells,         ///< and `hasRequest`
    kUnsynchronous, ///< and `unsychronized_update`
    kAsks,          ///< and `request`
    kAll,
    kObjectKinds,
};

/// The aspects of `Behave`.
enum Aspect : int
{
    kOutcome,  ///< of `update`, see `Evaluation::Outcome`
    kOutput,   ///< what it does with its outputs
    kMust,     ///< whether it must update
    kIgnored,  ///< which inputs it ignores, a bit each
    kLies,     ///< whether it says the contrary of who is inside, at each so manieth time
    kUnlocked, ///< of `unsychronized_update`
    kFunction, ///< of its update functions
    kAnswer,   ///< whether its own `request` walks; see `Answer`
    kAspects,
};

/// What an own `request` does.
enum Answer : int
{
    kWalks,
    kWalksTwice,
    kSaysFalse, ///< without a walk
    kSaysTrue,
    kAnswers,
};

/// Where an object can do something.
enum Hook : int
{
    kInUpdate,
    kInFunction,
    kInUnlocked,
    kInMust,
    kInIgnore,
    kInTell,
    kBeforeRequest,
    kAfterRequest,
    kHooks,
};

inline constexpr int kPools = 3; ///< the first of them is none

} // namespace QuorlTest::Walks
