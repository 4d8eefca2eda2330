#pragma once

#include <quorl/modules/VModule.h>
#include <quorl/modules/VModuleHold.h>
#include <quorl/tasks/VThreadManager.h>

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <list>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

namespace Threads
{

/// Runs tasks, each on a thread of its own as long as its body runs, so that tasks may block. A
/// thread whose task has ended waits for the next one.
///
/// A body that throws ends its task, and is logged. Each task is kept alive until its body has
/// ended, and so is the module that it comes from.
///
/// Threads: all operations from any, but `start` and `finish` of a task that belongs to the network
/// from the network's.
class ThreadPool final : public Quorl::VThreadManager
{
public:
    /// \param mostThreads how many there may be; a task that gets none waits for its turn. With 0,
    /// bodies run inside of `start`. Without a number there is no limit but the system's.
    /// \param modulePath of the module that this code comes from, which stays loaded while a task
    /// runs; empty for none.
    explicit ThreadPool(std::optional<std::size_t> mostThreads = {},
                        const std::string& modulePath = "");
    ~ThreadPool() override; ///< as `end`
    ThreadPool(const ThreadPool&) = delete;
    ThreadPool& operator=(const ThreadPool&) = delete;

    /// A body that runs already is run once more when it has ended, so that in any case one begins
    /// after this call: what was sent to the task before will be seen.
    /// \return false for a dead task, and if the system gives no thread, which is logged.
    bool start(const Quorl::RefPtr<Quorl::VTask>& task) override;

    /// \return false for a dead task, and for the one that calls it; otherwise true as soon as it
    /// does not run any more, also if it never did.
    bool wait(const Quorl::RefPtr<Quorl::VTask>& task) override;

    /// Whether its body runs, or waits for its turn.
    bool isrunning(const Quorl::RefPtr<Quorl::VTask>& task) const override;

    /// Only a `BackgroundTask` can be sent messages, whether it runs or not.
    bool sendMessage(const Quorl::RefPtr<Quorl::VTask>& task,
                     const Quorl::RefPtr<Quorl::VTaskMessage>& message) override;

    void waitForAll(unsigned long milliseconds) override;
    Quorl::WeakPtr<Quorl::VTask> CurrentThread() override;

    /// Forgets the tasks that wait for their turn, in any order, asks those that run to end, and
    /// returns when they have, and their threads too. Tasks can be started again afterwards. From
    /// one of its own threads, it only asks.
    void finish();

    /// As `finish`, for good. It may come from a task of its own that ends the process: that one
    /// is left where it is, with its thread, and nobody waits for it any more.
    void end();

    const std::string& modulePath() const { return modulePath_; }
    std::size_t tasks() const;   ///< that run, or wait for their turn
    std::size_t threads() const; ///< that there are

private:
    /// A task that runs, or waits for its turn.
    struct Job
    {
        Quorl::RefPtr<Quorl::VModuleHold> module; // goes behind the task
        Quorl::RefPtr<Quorl::VTask> task;
        std::thread::id thread{};  // that runs it
        bool isToRunAgain = false; // it was started while it ran
    };
    using Lock = std::unique_lock<std::mutex>;
    using Jobs = std::map<Quorl::WeakPtr<Quorl::VTask>, Job>;
    using LeftJobs = std::multimap<Jobs::key_type, Job>; // of any pool, which may share tasks

    bool runsHere() const { return mostThreads_ == 0; }
    bool awaitTurn(Jobs::iterator job);
    bool haveThread();
    void work();
    void run(Lock& lock, Jobs::iterator job);
    Quorl::RefPtr<Quorl::VModuleHold> ownHold() const;
    void letGoIfIdle();
    bool isOwnThread() const;
    void forgetLast(Jobs::iterator job);
    Jobs forgetWaiting();
    Jobs askToEnd();
    static LeftJobs& leftTasks();
    void leaveTasksOfThisThread();
    void joinThreads(Lock& lock);

    const std::optional<std::size_t> mostThreads_;
    const std::string modulePath_;

    mutable std::mutex mutex_;       // of all below
    std::condition_variable called_; // a task came, or the end
    std::condition_variable ended_;  // a task has ended
    Jobs jobs_;
    std::deque<Jobs::iterator> waiting_;
    std::list<std::jthread> threads_;
    std::size_t idle_ = 0;      // threads that run no task, or are on their way to the next
    std::size_t departing_ = 0; // tasks that have ended and are being let go of
    bool isFinishing_ = false;
    Quorl::RefPtr<Quorl::VModuleHold> hold_; // while a task runs
};

} // namespace Threads
