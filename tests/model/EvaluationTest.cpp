#include <tests/model/EvaluationGame.h>

#include <tests/model/Moves.h>

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <ostream>
#include <vector>

/// The kernel's evaluation against the model of it, on networks and histories that are made up.
namespace QuorlTest::Evaluation
{

std::ostream& operator<<(std::ostream& out, const Move& move)
{
    static const char* const names[] = {
        "Request",    "Touch",   "SetText",  "Attach",    "Empty",     "TouchState",
        "Ready",      "Release", "Graph",    "Cancel",    "Behave",    "InUpdate",
        "InObserver", "Forget",  "NewInput", "NewOutput", "TakeClass", "NewObject"};
    return out << "{Move::" << names[move.kind] << ", " << move.a << ", " << move.b << ", "
               << move.c << "}";
}

namespace
{

/// Requests and changes of values are more frequent than the rest.
std::vector<Move> anyHistory()
{
    const auto kind = rc::gen::weightedOneOf<int>({{6, rc::gen::just<int>(Move::Request)},
                                                   {3, rc::gen::just<int>(Move::Touch)},
                                                   {4, rc::gen::just<int>(Move::Attach)},
                                                   {3, rc::gen::just<int>(Move::InUpdate)},
                                                   {8, rc::gen::inRange<int>(0, Move::kKinds)}});
    const auto number = rc::gen::inRange(0, 24);
    return anyMoves<Move>(kind, number, number,
                          rc::gen::weightedOneOf<int>({{3, rc::gen::just(0)}, {1, number}}));
}

void playAndCompare(int verbosity)
{
    const auto objects = *rc::gen::inRange(1, 5);
    const auto moves = anyHistory();
    Game game(objects, verbosity);
    if (!game.play(moves)) RC_FAIL(game.difference());
}

RC_GTEST_PROP(Evaluation, IsThatOfTheModel, ())
{
    playAndCompare(0);
}

RC_GTEST_PROP(Evaluation, SaysWhatTheModelSays, ())
{
    playAndCompare(20 + *rc::gen::element(1, 0, -5, -14, -15, -16, -17, -19));
}

} // namespace
} // namespace QuorlTest::Evaluation
