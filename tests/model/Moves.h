#pragma once

#include <rapidcheck.h>

#include <iterator>
#include <ostream>
#include <tuple>
#include <vector>

/// What is done in a game, made up and printed.
namespace QuorlTest
{

/// One thing to do. `Kinds` has an enumeration of what there is, which ends with `kKinds`, and
/// their names; the comments there tell what the numbers mean. Whoever performs it brings them into
/// range.
template <class Kinds>
struct MoveOf : Kinds
{
    MoveOf(int kindOfMove, int first, int second, int third)
        : kind(kindOfMove), a(first), b(second), c(third)
    {
    }

    int kind;
    int a;
    int b;
    int c;
};

template <class Kinds>
std::ostream& operator<<(std::ostream& out, const MoveOf<Kinds>& move)
{
    static_assert(std::size(Kinds::kNames) == Kinds::kKinds);
    return out << "{" << Kinds::kNames[move.kind] << ", " << move.a << ", " << move.b << ", "
               << move.c << "}";
}

/// Any number of moves, each of numbers from these.
template <class Move>
std::vector<Move> anyMoves(const rc::Gen<int>& kind, const rc::Gen<int>& a, const rc::Gen<int>& b,
                           const rc::Gen<int>& c)
{
    return *rc::gen::container<std::vector<Move>>(rc::gen::map(
        rc::gen::tuple(kind, a, b, c), [](const std::tuple<int, int, int, int>& numbers) {
            return Move{static_cast<decltype(Move::kind)>(std::get<0>(numbers)),
                        std::get<1>(numbers), std::get<2>(numbers), std::get<3>(numbers)};
        }));
}

} // namespace QuorlTest
