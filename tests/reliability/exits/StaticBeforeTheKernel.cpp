#include <tests/reliability/exits/UseEverything.h>

/// A static object that uses the kernel at its end alone: all that the kernel makes at its first
/// use is younger than that.
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

int main()
{
    QuorlTest::useEverything();
    std::puts("main ends");
}
