#include <quorl/tasks/CurrentTask.h>

namespace Quorl
{

WeakPtr<VTask> currentTask()
{
    return {};
}

WeakPtr<ValueNotifier> currentTaskAsCube()
{
    return currentTask();
}

} // namespace Quorl
