#include <tests/model/EvaluationGame.h>

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <ostream>
#include <string>
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
rc::Gen<Move> anyMove()
{
    const auto kind = rc::gen::weightedOneOf<int>({{6, rc::gen::just<int>(Move::Request)},
                                                   {3, rc::gen::just<int>(Move::Touch)},
                                                   {4, rc::gen::just<int>(Move::Attach)},
                                                   {3, rc::gen::just<int>(Move::InUpdate)},
                                                   {8, rc::gen::inRange<int>(0, Move::kKinds)}});
    return rc::gen::map(rc::gen::tuple(kind, rc::gen::inRange(0, 24), rc::gen::inRange(0, 24),
                                       rc::gen::weightedOneOf<int>(
                                           {{3, rc::gen::just(0)}, {1, rc::gen::inRange(0, 24)}})),
                        [](const std::tuple<int, int, int, int>& numbers) {
                            return Move{static_cast<Move::Kind>(std::get<0>(numbers)),
                                        std::get<1>(numbers), std::get<2>(numbers),
                                        std::get<3>(numbers)};
                        });
}

void playAndCompare(int verbosity)
{
    const auto objects = *rc::gen::inRange(1, 5);
    const auto moves = *rc::gen::container<std::vector<Move>>(anyMove());
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
