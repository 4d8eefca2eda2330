#include "ThreadPool.h"

#include <quorl/foundation/ApplicationQuitter.h>
#include <quorl/kit/Module.h>
#include <quorl/services/Vprintf.h>
#include <quorl/tasks/VThreadCreator.h>

#include <charconv>
#include <cstdlib>
#include <string_view>
#include <system_error>

/// Brings threads in. ZELM_THREADS in the environment is the number of threads that there may be;
/// with 0, tasks run on the thread that starts them, one after the other, which can be repeated.
namespace
{

using Quorl::VManagedObject;

std::optional<std::size_t> mostThreads()
{
    const char* const text = std::getenv("ZELM_THREADS");
    if (!text || *text == '\0') return std::nullopt;
    const std::string_view given = text;
    std::size_t number = 0;
    const auto [end, error] = std::from_chars(given.data(), given.data() + given.size(), number);
    if (error == std::errc() && end == given.data() + given.size()) return number;
    Quorl::Vprintf(0, "ZELM_THREADS is no number of threads: %s\n", text);
    return std::nullopt;
}

class PoolCreator final : public Quorl::VThreadCreator
{
public:
    PoolCreator() : VThreadCreator("Threads/Pool", 0, {}, ZELM_MODULE_DIRECTORY)
    {
        self.ref(); // static: no handle may delete it
    }

    Quorl::VThreadManager* getManager() override { return &pool; }

    Threads::ThreadPool pool{mostThreads(), VManagedObject::CurrentLoadModule};
};

class QuitPool final : public Quorl::ApplicationQuitter
{
public:
    explicit QuitPool(Threads::ThreadPool& pool) : pool_(pool) {}
    void quit() override { pool_.finish(); }

private:
    Threads::ThreadPool& pool_;
};

/// Provides nothing. It ends when somebody unloads the module, as the registry alone owns it; while
/// tasks run, the code stays where it is.
class DepartureWatch final : public Quorl::VInputCreatorBase
{
public:
    explicit DepartureWatch(Threads::ThreadPool& pool)
        : VInputCreatorBase("Threads/Departure", 0, {}, ZELM_MODULE_DIRECTORY), pool_(pool)
    {
    }

    ~DepartureWatch() override
    {
        if (const std::size_t tasks = pool_.tasks(); tasks > 0)
            Quorl::Vprintf(0, "Not unloaded: %s, of which %zu tasks run. It leaves behind them.\n",
                           pool_.modulePath().c_str(), tasks);
        else
            pool_.finish();
    }

private:
    Threads::ThreadPool& pool_;
};

/// Ends the tasks before anything that they use, also where the process ends without unloading.
class Departure
{
public:
    explicit Departure(Threads::ThreadPool& pool) : pool_(pool), watch_(new DepartureWatch(pool)) {}
    Departure(const Departure&) = delete;
    Departure& operator=(const Departure&) = delete;
    ~Departure()
    {
        pool_.end();
        if (watch_) watch_->remove();
    }

private:
    Threads::ThreadPool& pool_;
    const Quorl::WeakPtr<VManagedObject> watch_;
};

PoolCreator creator;
QuitPool quitter(creator.pool);
Departure departure(creator.pool);

} // namespace

ZELM_MODULE(threads)
{
    initialization.title = "Threads for tasks";
    initialization.description = "Runs each task on a thread of its own, which may block.";
    return true;
}
