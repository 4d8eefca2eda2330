#include "Harm.h"

#include <quorl/services/VActionNotifier.h>

/// Hears of everything, and leaves at once.
struct Subscriber final : Quorl::VActionNotifier
{
    ~Subscriber() override { std::printf("the subscriber ends\n"); }
};
static const Quorl::RefPtr<Subscriber> subscriber(new Subscriber);

ZELM_MODULE(harm)
{
    subscriber->activate();
    return false;
}
