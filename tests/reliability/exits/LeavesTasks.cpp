#include <quorl/kit/BackgroundTask.h>
#include <quorl/tasks/VThreadManager.h>
#include <tests/reliability/exits/UseEverything.h>

#include <atomic>
#include <thread>

/// Ends while tasks run on threads of a module, and others wait for one.
namespace
{

using namespace Quorl;

std::atomic<int> theRunning = 0;

struct Waiting final : BackgroundTask
{
    void run() override
    {
        ++theRunning;
        while (!isToEnd()) std::this_thread::yield();
        VLogger::print(0, "a task ends");
        deliver([] {});
    }
};

} // namespace

int main(int count, char** arguments)
{
    if (count != 2 || !LoadVModule(arguments[1])) return 1;
    VThreadManager* const manager = VThreadCreator::getThreadManager();
    if (!manager) return 1;
    constexpr int kTasks = 20;
    static RefPtr<Waiting> held;
    for (int number = 0; number < kTasks; ++number)
    {
        held = new Waiting;
        manager->start(held);
    }
    while (theRunning == 0) std::this_thread::yield();
    std::puts("main ends");
}
