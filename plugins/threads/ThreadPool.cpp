#include "ThreadPool.h"

#include <quorl/kit/BackgroundTask.h>
#include <quorl/kit/LongestWait.h>
#include <quorl/modules/VModules.h>
#include <quorl/services/Vprintf.h>
#include <quorl/tasks/VTaskMessage.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <exception>
#include <new>
#include <system_error>
#include <utility>

namespace Threads
{
namespace
{

using Quorl::BackgroundTask;
using Quorl::RefPtr;
using Quorl::VTask;
using Quorl::WeakPtr;

constexpr int kError = 0; // as loud as messages are that everybody is to see

thread_local VTask* current = nullptr; // the task whose body this thread is in

/// Sets the current task for the time of a body, which may run inside of another one's.
class InTask
{
public:
    explicit InTask(VTask& task) : before_(std::exchange(current, &task)) {}
    InTask(const InTask&) = delete;
    InTask& operator=(const InTask&) = delete;
    ~InTask() { current = before_; }

private:
    VTask* const before_;
};

void runBody(VTask& task)
{
    const InTask here(task);
    try
    {
        task.run();
    }
    catch (const std::exception& exception)
    {
        Quorl::Vprintf(kError, "A task ended by an exception: %s\n", exception.what());
    }
    catch (...)
    {
        Quorl::Vprintf(kError, "A task ended by an exception.\n");
    }
}

BackgroundTask* withInbox(const RefPtr<VTask>& task)
{
    return dynamic_cast<BackgroundTask*>(task.rawptr());
}

} // namespace

ThreadPool::ThreadPool(std::optional<std::size_t> mostThreads, const std::string& modulePath)
    : mostThreads_(mostThreads), modulePath_(modulePath)
{
}

ThreadPool::~ThreadPool()
{
    end();
}

bool ThreadPool::start(const RefPtr<VTask>& task)
{
    if (!task) return false;
    Lock lock(mutex_);
    if (isFinishing_) return false;
    if (const auto running = jobs_.find(task); running != jobs_.end())
    {
        running->second.isToRunAgain = true;
        return true;
    }
    const auto hold = hold_ ? hold_ : ownHold();
    const auto job = jobs_.try_emplace(task, Job{Quorl::keepModuleLoaded(*task), task}).first;
    hold_ = hold;
    if (BackgroundTask* const receiver = withInbox(task)) receiver->inbox.open(!runsHere());
    if (runsHere())
    {
        run(lock, job);
        return true;
    }
    return awaitTurn(job);
}

/// \return false if there is no thread for it, and will be none: it is forgotten, as it is if this
/// throws.
bool ThreadPool::awaitTurn(Jobs::iterator job)
{
    try
    {
        waiting_.push_back(job);
        if (haveThread())
        {
            called_.notify_one();
            return true;
        }
    }
    catch (...)
    {
        forgetLast(job);
        throw;
    }
    forgetLast(job);
    return false;
}

void ThreadPool::forgetLast(Jobs::iterator job)
{
    if (!waiting_.empty() && waiting_.back() == job) waiting_.pop_back();
    jobs_.erase(job);
    letGoIfIdle();
}

/// Makes a thread for the last of the waiting tasks, unless one is idle or there are as many as
/// there may be.
bool ThreadPool::haveThread()
{
    if (idle_ >= waiting_.size()) return true;
    if (mostThreads_ && threads_.size() >= *mostThreads_) return true;
    try
    {
        threads_.emplace_back([this] { work(); });
        ++idle_;
    }
    catch (const std::system_error& error)
    {
        Quorl::Vprintf(kError, "No thread for a task: %s\n", error.what());
        return false;
    }
    return true;
}

/// \return null if this code is of no module.
RefPtr<Quorl::VModuleHold> ThreadPool::ownHold() const
{
    if (modulePath_.empty()) return {};
    const RefPtr<Quorl::VModule> module = Quorl::VModules::find(modulePath_);
    return RefPtr<Quorl::VModuleHold>(module ? new Quorl::VModuleHold(module) : nullptr);
}

void ThreadPool::letGoIfIdle()
{
    if (jobs_.empty() && departing_ == 0) hold_ = RefPtr<Quorl::VModuleHold>();
}

/// What each thread does.
void ThreadPool::work()
{
    Lock lock(mutex_);
    for (;;)
    {
        called_.wait(lock, [this] { return isFinishing_ || !waiting_.empty(); });
        if (waiting_.empty()) return;
        const auto job = waiting_.front();
        waiting_.pop_front();
        --idle_;
        run(lock, job);
        ++idle_;
    }
}

void ThreadPool::run(Lock& lock, Jobs::iterator job)
{
    job->second.thread = std::this_thread::get_id();
    do {
        job->second.isToRunAgain = false;
        lock.unlock();
        runBody(*job->second.task);
        lock.lock();
    } while (job->second.isToRunAgain && !isFinishing_);
    ++departing_;
    {
        const Job ended = std::move(job->second);
        jobs_.erase(job);
        lock.unlock(); // the last handle may go here, and the task's destructor may do anything
    }
    lock.lock();
    --departing_;
    letGoIfIdle();
    ended_.notify_all();
}

bool ThreadPool::wait(const RefPtr<VTask>& task)
{
    if (!task) return false;
    Lock lock(mutex_);
    const auto job = jobs_.find(task);
    if (job == jobs_.end()) return true;
    if (job->second.thread == std::this_thread::get_id()) return false;
    ended_.wait(lock, [&] { return !jobs_.contains(task); });
    return true;
}

bool ThreadPool::isrunning(const RefPtr<VTask>& task) const
{
    const std::scoped_lock lock(mutex_);
    return task && jobs_.contains(task);
}

bool ThreadPool::sendMessage(const RefPtr<VTask>& task, const RefPtr<Quorl::VTaskMessage>& message)
{
    BackgroundTask* const receiver = task ? withInbox(task) : nullptr;
    if (!receiver || !message) return false;
    receiver->inbox.post(message);
    return true;
}

void ThreadPool::waitForAll(unsigned long milliseconds)
{
    Lock lock(mutex_);
    const auto longest = static_cast<unsigned long>(Quorl::kLongestWait.count());
    ended_.wait_for(lock, std::chrono::milliseconds(std::min(milliseconds, longest)),
                    [this] { return jobs_.empty() && departing_ == 0; });
}

WeakPtr<VTask> ThreadPool::CurrentThread()
{
    return current;
}

bool ThreadPool::isOwnThread() const
{
    return std::ranges::any_of(threads_, [](const std::jthread& thread) {
        return thread.get_id() == std::this_thread::get_id();
    });
}

ThreadPool::Jobs ThreadPool::forgetWaiting()
{
    Jobs forgotten;
    for (; !waiting_.empty(); waiting_.pop_front())
        forgotten.insert(jobs_.extract(waiting_.front()));
    return forgotten;
}

void ThreadPool::finish()
{
    Jobs forgotten; // ended without the lock
    Lock lock(mutex_);
    forgotten = askToEnd();
    if (!isOwnThread()) joinThreads(lock);
}

void ThreadPool::end()
{
    Jobs forgotten; // ended without the lock
    Lock lock(mutex_);
    forgotten = askToEnd();
    leaveTasksOfThisThread();
    joinThreads(lock);
}

/// \return those that had no turn yet.
ThreadPool::Jobs ThreadPool::askToEnd()
{
    Jobs forgotten = forgetWaiting();
    for (auto& [task, job] : jobs_)
    {
        job.isToRunAgain = false;
        if (BackgroundTask* const receiver = withInbox(job.task)) receiver->inbox.close();
    }
    letGoIfIdle();
    ended_.notify_all(); // a task that runs may wait for one that is forgotten
    return forgotten;
}

/// Never ended: their bodies have not.
ThreadPool::LeftJobs& ThreadPool::leftTasks()
{
    alignas(LeftJobs) static std::byte place[sizeof(LeftJobs)]; // to end must not need memory
    static auto& tasks = *new (place) LeftJobs;
    return tasks;
}

/// Their bodies are below this call, and do not go on.
void ThreadPool::leaveTasksOfThisThread()
{
    for (auto job = jobs_.begin(); job != jobs_.end();)
    {
        const auto entry = job++;
        if (entry->second.thread == std::this_thread::get_id())
            leftTasks().insert(jobs_.extract(entry));
    }
}

/// Waits for all threads but this one.
void ThreadPool::joinThreads(Lock& lock)
{
    std::list<std::jthread> leaving = std::exchange(threads_, {});
    isFinishing_ = true;
    lock.unlock();
    called_.notify_all();
    for (std::jthread& thread : leaving)
        if (thread.get_id() == std::this_thread::get_id()) thread.detach();
    leaving.clear(); // each is joined
    lock.lock();
    isFinishing_ = false;
    idle_ = 0;
    ended_.notify_all();
}

std::size_t ThreadPool::tasks() const
{
    const std::scoped_lock lock(mutex_);
    return jobs_.size();
}

std::size_t ThreadPool::threads() const
{
    const std::scoped_lock lock(mutex_);
    return threads_.size();
}

} // namespace Threads
