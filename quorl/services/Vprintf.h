#pragma once

#include <quorl/Export.h>

namespace Quorl
{

/// How much `Vprintf` lets through. Negative means that the environment variable VVERBOSITY is read
/// at the next call, where unset means 0. A negative value in the variable is read again each time.
extern QUORL_API int verbosity_level;

/// What the variable says becomes the level.
QUORL_API void readVerbosityLevel();

/// Prints to standard error if `level` is not above `verbosity_level`, without prefix or line end,
/// and flushes.
[[gnu::format(printf, 2, 3)]] QUORL_API void Vprintf(int level, const char* format, ...);

/// Whether `Vprintf` prints at that level, for callers to whom the arguments are dear: reads the
/// variable as that does.
inline bool isVprintfAudible(int level)
{
    if (verbosity_level < 0) readVerbosityLevel();
    return level <= verbosity_level;
}

} // namespace Quorl
