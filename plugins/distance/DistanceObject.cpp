#include "DistanceObject.h"

#include "Distance.h"

#include <quorl/kit/BackgroundTask.h>

#include <optional>

namespace Maps
{

using Quorl::RefPtr;
using Quorl::ValuePool;
using Quorl::WeakPtr;

namespace
{

constexpr const char* kTask = "refine";
constexpr int kCoarseStep = 8; // pixels

/// Works on the jobs that it is sent, one after the other.
class RefineTask final : public Quorl::BackgroundTask
{
public:
    explicit RefineTask(DistanceToLevel* object) : object_(object) {}

    void run() override
    {
        while (!isToEnd())
        {
            const RefPtr<DistanceJob> job = inbox.take();
            if (!job) return;
            work(job);
        }
    }

private:
    void work(const RefPtr<DistanceJob>& job) const
    {
        const std::optional<Field> fine =
            distanceToLevel(job->heights, job->level, [&] { return job->isGivenUp || isToEnd(); });
        if (!fine) return;
        deliver([object = object_, job, field = *fine] {
            if (const RefPtr<DistanceToLevel> live = object) live->show(job, field);
        });
    }

    const WeakPtr<DistanceToLevel> object_;
};

} // namespace

DistanceToLevel::~DistanceToLevel()
{
    for (const auto& [context, job] : latest_) job->isGivenUp = true;
}

bool DistanceToLevel::update(Quorl::VRequest& request, double /*precision*/)
{
    const RefPtr<DistanceJob> job(
        new DistanceJob(heights_(request), level_(request), request.Pool));
    giveUp(request.Pool);
    distance_.set(request, coarseDistanceToLevel(job->heights, job->level, kCoarseStep));
    latest_[request.Pool] = job;
    if (!refine(job)) show(job, *distanceToLevel(job->heights, job->level, [] { return false; }));
    return true;
}

/// \return whether a task has it.
bool DistanceToLevel::refine(const RefPtr<DistanceJob>& job)
{
    if (!tasks_.findTask(kTask)) tasks_.addTask(RefPtr<Quorl::VTask>(new RefineTask(this)), kTask);
    const RefPtr<Quorl::VTask> task = tasks_.findTask(kTask);
    return task && task->sendMessage(job) && tasks_.run(task);
}

void DistanceToLevel::giveUp(const WeakPtr<ValuePool>& context)
{
    if (const auto entry = latest_.find(context); entry != latest_.end())
        entry->second->isGivenUp = true;
    std::erase_if(latest_, [](const auto& entry) {
        return entry.second->hasContext && !entry.second->context; // contexts that have ended
    });
}

void DistanceToLevel::show(const RefPtr<DistanceJob>& job, const Field& fine)
{
    const auto entry = latest_.find(job->context);
    if (entry == latest_.end() || entry->second != job) return;
    const RefPtr<ValuePool> pool = job->context;
    if (job->hasContext && !pool) return;
    distance_.set(pool, fine);
}

} // namespace Maps
