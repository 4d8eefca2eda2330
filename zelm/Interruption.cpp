#include "Interruption.h"

#include <csignal>

namespace Zelm
{
namespace
{

volatile std::sig_atomic_t theWish = 0;

extern "C" void noteInterruption(int signal)
{
    theWish = 1;
    std::signal(signal, SIG_DFL);
}

} // namespace

void Interruption::listen()
{
    std::signal(SIGINT, &noteInterruption);
}

bool Interruption::isWanted()
{
    return theWish != 0;
}

} // namespace Zelm
