#include <quorl/tasks/VThreadManager.h>

#include <quorl/tasks/VTask.h>
#include <quorl/tasks/VTaskMessage.h>

namespace Quorl
{

VThreadManager::VThreadManager() = default;
VThreadManager::~VThreadManager() = default;

bool VThreadManager::start(const RefPtr<VTask>& /*task*/)
{
    return false;
}

bool VThreadManager::wait(const RefPtr<VTask>& /*task*/)
{
    return false;
}

bool VThreadManager::isrunning(const RefPtr<VTask>& /*task*/) const
{
    return false;
}

bool VThreadManager::sendMessage(const RefPtr<VTask>& /*task*/,
                                 const RefPtr<VTaskMessage>& /*message*/)
{
    return false;
}

void VThreadManager::waitForAll(unsigned long /*milliseconds*/) {}

WeakPtr<VTask> VThreadManager::CurrentThread()
{
    return {};
}

} // namespace Quorl
