#include "ThreadPool.h"

#include <quorl/kit/BackgroundTask.h>
#include <quorl/kit/LongestWait.h>
#include <quorl/modules/VModules.h>
#include <quorl/services/Vprintf.h>
#include <quorl/tasks/VTaskMessage.h>

#include <algorithm>
#include <chrono>
#include <exception>
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
    const auto [job, isNew] = jobs_.try_emplace(task);
    if (!isNew)
    {
        job->second.isToRunAgain = true;
        return true;
    }
    job->second = {Quorl::keepModuleLoaded(*task), task};
    if (BackgroundTask* const receiver = withInbox(task)) receiver->inbox.open(!runsHere());
    keepLoaded();
    if (runsHere())
    {
        run(lock, job);
        return true;
    }
    waiting_.push_back(job);
    if (haveThread())
    {
        called_.notify_one();
        return true;
    }
    waiting_.pop_back();
    jobs_.erase(job);
    return false;
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

void ThreadPool::keepLoaded()
{
    if (hold_ || modulePath_.empty()) return;
    const RefPtr<Quorl::VModule> module = Quorl::VModules::find(modulePath_);
    if (module) hold_ = new Quorl::VModuleHold(module);
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
    if (jobs_.empty() && departing_ == 0) hold_ = RefPtr<Quorl::VModuleHold>();
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

std::deque<ThreadPool::Job> ThreadPool::forgetWaiting()
{
    std::deque<Job> forgotten;
    for (const auto& job : std::exchange(waiting_, {}))
    {
        forgotten.push_back(std::move(job->second));
        jobs_.erase(job);
    }
    return forgotten;
}

void ThreadPool::finish()
{
    std::deque<Job> forgotten; // ended without the lock
    Lock lock(mutex_);
    forgotten = askToEnd();
    if (!isOwnThread()) joinThreads(lock);
}

void ThreadPool::end()
{
    std::deque<Job> forgotten; // ended without the lock
    Lock lock(mutex_);
    forgotten = askToEnd();
    leaveTasksOfThisThread();
    joinThreads(lock);
}

/// \return those that had no turn yet.
std::deque<ThreadPool::Job> ThreadPool::askToEnd()
{
    std::deque<Job> forgotten = forgetWaiting();
    for (auto& [task, job] : jobs_)
    {
        job.isToRunAgain = false;
        if (BackgroundTask* const receiver = withInbox(job.task)) receiver->inbox.close();
    }
    if (jobs_.empty() && departing_ == 0) hold_ = RefPtr<Quorl::VModuleHold>();
    ended_.notify_all(); // a task that runs may wait for one that is forgotten
    return forgotten;
}

/// Their bodies are below this call, and do not go on.
void ThreadPool::leaveTasksOfThisThread()
{
    for (auto job = jobs_.begin(); job != jobs_.end();)
    {
        const auto entry = job++;
        if (entry->second.thread != std::this_thread::get_id()) continue;
        static auto& left = *new std::deque<Job>; // never ended: the bodies have not
        left.push_back(std::move(entry->second));
        jobs_.erase(entry);
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
