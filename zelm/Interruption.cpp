#include "Interruption.h"

#include <csignal>

namespace Zelm
{
namespace
{

constinit std::atomic<bool> theWish{false};
static_assert(std::atomic<bool>::is_always_lock_free); // it is set by a handler of signals

extern "C" void noteInterruption(int signal)
{
    theWish = true;
    std::signal(signal, SIG_DFL);
}

} // namespace

void Interruption::listen()
{
    std::signal(SIGINT, &noteInterruption);
}

const std::atomic<bool>& Interruption::wish()
{
    return theWish;
}

} // namespace Zelm
