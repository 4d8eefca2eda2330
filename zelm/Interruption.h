#pragma once

namespace Zelm
{

/// Ctrl-C asks for a clean end: requests are cancelled, and what is being written is written or
/// left as it was. A second one ends the process.
class Interruption
{
public:
    Interruption() = delete;

    static void listen();
    static bool isWanted();
};

} // namespace Zelm
