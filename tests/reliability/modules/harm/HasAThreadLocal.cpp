#include "Harm.h"

struct Local
{
    ~Local() { std::printf("the local ends\n"); }
    int number = 1;
};

ZELM_MODULE(harm)
{
    thread_local const Local local; // keeps the module in its process
    return local.number == 1;
}
