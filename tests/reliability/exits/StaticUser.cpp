#include <tests/reliability/exits/UseEverything.h>

/// Static objects that use the kernel from before `main` until behind it, and own some of it.
namespace
{

struct Always
{
    Always()
    {
        QuorlTest::useEverything();
        std::puts("used before main");
    }
    ~Always()
    {
        QuorlTest::useEverything();
        std::puts("used behind main");
    }

    Quorl::RefPtr<QuorlTest::Counting> object{new QuorlTest::Counting("of a static")};
    Quorl::RefPtr<Quorl::ValuePool> pool{new Quorl::ValuePool("of a static")};
};

const Always always;

} // namespace

int main()
{
    QuorlTest::useEverything();
    std::puts("main ends");
}
