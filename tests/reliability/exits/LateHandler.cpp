#include <tests/reliability/exits/UseEverything.h>

/// A handler that runs behind the clean-up of everything that the kernel made in `main`.
int main()
{
    std::atexit([] {
        QuorlTest::useEverything();
        std::puts("used by a handler");
    });
    QuorlTest::useEverything();
    std::puts("main ends");
}
