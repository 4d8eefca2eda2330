#include <quorl/tasks/VTask.h>

#include <quorl/tasks/ThreadManagerValue.h>
#include <quorl/tasks/VTaskMessage.h>

namespace Quorl
{

VTask::VTask(const WeakPtr<VParameter>& initialOwner) : VInputBase(initialOwner) {}
VTask::~VTask() = default;

void VTask::valueChanged(const RefPtr<VValueBase>& /*value*/, const WeakPtr<ValuePool>& /*pool*/,
                         const ValueNotifierList* /*caller*/, const ValueMap* /*changes*/)
{
}

bool VTask::SyncFromContextValue(const RefPtr<ValuePool>& /*pool*/, const string& /*member*/)
{
    return false;
}

bool VTask::sendMessage(const RefPtr<VTaskMessage>& message) const
{
    const RefPtr<VValueParameter<VThreadManager>> parameter = owner;
    if (!parameter) return false;
    const RefPtr<VValue<VThreadManager>> value = parameter->getValue({}, "");
    VThreadManager* const manager = value ? value->livingManager() : nullptr;
    return manager && manager->sendMessage(RefPtr<VTask>(this), message);
}

} // namespace Quorl
