#include <quorl/kit/BackgroundTask.h>

#include <quorl/kit/HostQueue.h>
#include <quorl/slots/VParameter.h>

#include <utility>

namespace Quorl
{

BackgroundTask::BackgroundTask() : VTask({}) {}
BackgroundTask::~BackgroundTask() = default;

void BackgroundTask::deliver(std::function<void()> work) const
{
    HostQueue::post(std::move(work), findInterface(typeid(VModuleHold)));
}

RefPtr<VModuleHold> keepModuleLoaded(const VTask& task)
{
    if (const auto own = task.findInterface(typeid(VModuleHold))) return own;
    if (!task.owner) return {};
    const RefPtr<VModuleHold> hold = task.owner->findInterface(typeid(VModuleHold));
    if (hold) task.addInterface(hold);
    return hold;
}

} // namespace Quorl
