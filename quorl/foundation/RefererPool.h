#pragma once

#include <quorl/foundation/Export.h>

namespace Tolmen
{

struct Referer;

/// Where count blocks come from and go to. There is one for every object, so they have storage of
/// their own: blocks made one after the other lie side by side, and taking one costs less than the
/// heap does.
///
/// Each thread keeps some free blocks for itself; what it has too many of, and all of them when it
/// ends, goes to a store that all threads share. Memory never goes back to the system, but blocks
/// are reused. Under the address sanitizer blocks come from the heap, which can tell their misuse.
///
/// Threads: a block may go back on another thread than the one that it was taken on.
namespace RefererPool
{

/// \return a block in its initial state.
/// \throws std::bad_alloc
TOLMEN_API Referer* take();

TOLMEN_API void giveBack(Referer* block) noexcept;

} // namespace RefererPool
} // namespace Tolmen
