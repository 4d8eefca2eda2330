#include <tests/reliability/exits/UseEverything.h>

/// A static object that uses the kernel at its end: all that the kernel makes at its first use is
/// younger than that. `main` uses it before, or, with an argument, nobody does.
namespace
{

struct AtTheEnd
{
    ~AtTheEnd()
    {
        QuorlTest::useEverything();
        std::puts("used at the end");
    }
};

const AtTheEnd atTheEnd;

} // namespace

int main(int count, char** /*arguments*/)
{
    if (count == 1) QuorlTest::useEverything();
    std::puts("main ends");
}
