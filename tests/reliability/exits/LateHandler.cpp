#include <tests/reliability/exits/UseEverything.h>

/// A handler that runs behind the clean-up of everything that the kernel made in `main`; or, with
/// an argument, that uses it first.
int main(int count, char** /*arguments*/)
{
    std::atexit([] {
        QuorlTest::useEverything();
        std::puts("used by a handler");
    });
    if (count == 1) QuorlTest::useEverything();
    std::puts("main ends");
}
