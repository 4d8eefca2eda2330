#include <quorl/tasks/VScheduler.h>

#include <quorl/foundation/AtCleanUp.h>
#include <quorl/foundation/Profiler.h>
#include <quorl/objects/VObject.h>
#include <quorl/objects/VRequest.h>
#include <quorl/values/ValuePool.h>

#include <cstdint>
#include <map>

namespace Quorl
{
namespace
{

constexpr int kProfiledLine = 95; // a fixed name of the section, not a place in this file

struct Entry
{
    double precision;
    WeakPtr<ValuePool> pool;
};

struct EntryList
{
    std::map<RefPtr<VObject>, Entry> entries;
    std::int32_t running = 0; // calls of `execute`; see VScheduler::isRunning
};

EntryList& SchedulerList()
{
    static auto& list = *new EntryList;
    static const Tolmen::AtCleanUp end([] { Tolmen::emptySteadily(list.entries); });
    return list;
}

/// What is scheduled while `execute` runs. Its counter stays 0.
EntryList& NextSchedulerList()
{
    static auto& list = *new EntryList;
    static const Tolmen::AtCleanUp end([] { Tolmen::emptySteadily(list.entries); });
    return list;
}

/// From here on objects are deferred; at the end, by an exception as well, not any more.
class ExecuteScope
{
public:
    ExecuteScope()
    {
        ++SchedulerList().running;
        VScheduler::AllowScheduling = false;
    }
    ExecuteScope(const ExecuteScope&) = delete;
    ExecuteScope& operator=(const ExecuteScope&) = delete;
    ~ExecuteScope()
    {
        VScheduler::AllowScheduling = true;
        --SchedulerList().running;
    }
};

bool run(const RefPtr<VObject>& object, const Entry& entry, double factor)
{
    VRequest request(RefPtr<ValuePool>(entry.pool), false);
    object->Executor.reset();
    return object->init_request(request, entry.precision * factor);
}

/// \return the number of objects that were modified.
int runAll(std::map<RefPtr<VObject>, Entry>& entries, double factor)
{
    int modified = 0;
    while (!entries.empty())
    {
        const auto node = entries.extract(entries.begin());
        if (node.key() && run(node.key(), node.mapped(), factor)) ++modified;
    }
    return modified;
}

/// Deliberate: the counter is exchanged, too. Pinned by VScheduler.CountsRunningCallsWithAnOffset.
void takeOverDeferred()
{
    SchedulerList() = NextSchedulerList();
    NextSchedulerList().entries.clear();
}

} // namespace

constinit bool VScheduler::AllowScheduling = true;

bool VScheduler::schedule(const RefPtr<VObject>& object, double precision,
                          const RefPtr<ValuePool>& pool)
{
    const bool isForComing = AllowScheduling;
    EntryList& list = isForComing ? SchedulerList() : NextSchedulerList();
    list.entries.insert_or_assign(object, Entry{precision, pool});
    return isForComing;
}

int VScheduler::execute(double factor)
{
    const Tolmen::Profiler section("VScheduler", kProfiledLine,
                                   "static int Quorl::VScheduler::execute(double)",
                                   "Scheduled Zelm Object Execution ", 0);
    const ExecuteScope scope;
    const int modified = runAll(SchedulerList().entries, factor);
    takeOverDeferred();
    return modified;
}

std::list<WeakPtr<VObject>> VScheduler::getScheduledList()
{
    std::list<WeakPtr<VObject>> objects;
    for (const auto& [object, entry] : SchedulerList().entries) objects.emplace_back(object);
    return objects;
}

int VScheduler::isRunning()
{
    return SchedulerList().running;
}

} // namespace Quorl
