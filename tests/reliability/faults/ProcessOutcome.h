#pragma once

#include <tests/reliability/faults/FailingMemory.h>

#include <functional>

namespace QuorlTest
{

/// What a process of its own comes to, in which an allocation fails.
enum class Outcome
{
    Done,
    Failed,
    Ended, ///< by what must not throw: a destructor of the JSON library, a static initialiser
    Broken
};

/// Does something in a process of its own, in which an allocation fails.
/// \param isWhole asked in the same process when there is memory again.
Outcome outcomeOf(const Work& work, const std::function<bool()>& isWhole, long number,
                  FailingMemory::Extent extent = FailingMemory::Once);

} // namespace QuorlTest
