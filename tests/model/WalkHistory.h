#pragma once

#include <tests/model/WalkMoves.h>

#include <cstdint>

namespace QuorlTest::Walks
{

/// What a history is like.
enum class Temper
{
    Calm,    ///< objects that only update, as told; the same requests again and again
    Wild,    ///< everything
    Talking, ///< either of them, and requests tell what they do
};

/// The history of that number: a network is made, and then walked and changed.
History historyOf(std::uint64_t seed, Temper temper);

} // namespace QuorlTest::Walks
