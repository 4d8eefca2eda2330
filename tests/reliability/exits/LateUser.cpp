#include <tests/reliability/exits/UseEverything.h>

/// A library that brings the kernel with it, into a process that knows nothing of either.
namespace
{

struct Always
{
    Always()
    {
        QuorlTest::useEverything();
        std::puts("used when loaded");
    }
    ~Always()
    {
        QuorlTest::useEverything();
        std::puts("used when it leaves");
    }
};

const Always always;

} // namespace

extern "C" __attribute__((visibility("default"))) void useIt();
void useIt()
{
    QuorlTest::useEverything();
    std::puts("used");
}
