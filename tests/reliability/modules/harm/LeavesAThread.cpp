#include "Harm.h"

#include <thread>

/// A thread that ends when it is told so, by the end of the module.
static const std::jthread worker([](const std::stop_token& stop) {
    while (!stop.stop_requested()) std::this_thread::yield();
});

ZELM_MODULE(harm)
{
    return worker.joinable();
}
