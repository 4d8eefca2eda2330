#pragma once

#include <atomic>

namespace Zelm
{

/// Ctrl-C asks for a clean end: requests are cancelled, and what is being written is written or
/// left as it was. A second one ends the process.
class Interruption
{
public:
    Interruption() = delete;

    static void listen();
    static bool isWanted() { return wish(); }

    /// For who has to be told by a flag. It lives to the end of the process.
    static const std::atomic<bool>& wish();
};

} // namespace Zelm
