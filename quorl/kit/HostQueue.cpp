#include <quorl/kit/HostQueue.h>

#include <quorl/kit/LongestWait.h>

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <utility>

namespace Quorl
{
namespace
{

struct Entry
{
    RefPtr<VModuleHold> hold; // ahead of the work: members end in the reverse order
    std::function<void()> work;
};

struct Queue
{
    std::mutex mutex;
    std::condition_variable arrived;
    std::deque<Entry> entries;
};

Queue& theQueue()
{
    static auto& queue = *new Queue; // tasks may end after everything else
    return queue;
}

} // namespace

void HostQueue::post(std::function<void()> work, const RefPtr<VModuleHold>& hold)
{
    Queue& queue = theQueue();
    Entry entry{hold, std::move(work)}; // ends without the lock, should memory run out
    {
        const std::scoped_lock lock(queue.mutex);
        queue.entries.push_back(std::move(entry));
    }
    queue.arrived.notify_one();
}

int HostQueue::drain()
{
    Queue& queue = theQueue();
    std::unique_lock lock(queue.mutex);
    int done = 0;
    for (std::size_t left = queue.entries.size(); left > 0 && !queue.entries.empty(); --left)
    {
        {
            const Entry entry = std::move(queue.entries.front());
            queue.entries.pop_front();
            lock.unlock();
            if (entry.work) entry.work();
        } // it ends without the lock: what it captures may post
        ++done;
        lock.lock();
    }
    return done;
}

bool HostQueue::waitFor(std::chrono::milliseconds time)
{
    Queue& queue = theQueue();
    std::unique_lock lock(queue.mutex);
    return queue.arrived.wait_for(lock, std::min(time, kLongestWait),
                                  [&] { return !queue.entries.empty(); });
}

} // namespace Quorl
