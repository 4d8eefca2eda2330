#include <tests/reliability/exits/UseEverything.h>

#include <thread>

/// Handles and uses of the kernel that end with their threads, that of `main` among them.
namespace
{

struct Local
{
    ~Local() { QuorlTest::useEverything(); }
    Quorl::RefPtr<QuorlTest::Counting> object{new QuorlTest::Counting("of a thread")};
};

void touchLocal()
{
    thread_local const Local local;
    local.object->updates = 1;
}

} // namespace

int main()
{
    std::thread(&touchLocal).join(); // one thread at a time uses the kernel
    touchLocal();
    std::puts("main ends");
}
