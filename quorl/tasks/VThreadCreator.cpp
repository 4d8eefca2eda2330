#include <quorl/tasks/VThreadCreator.h>

#include <quorl/tasks/VTask.h>
#include <quorl/tasks/VThreadManager.h>

namespace Quorl
{

template class VInputCreator<VThreadManager, VInputCreatorBase>;

VThreadCreator::VThreadCreator(const string& wantedName, int givenPriority,
                               const RefPtr<VCreationPreferences>& givenPreferences,
                               const char* givenText)
    : VInputCreator<VThreadManager, VInputCreatorBase>(wantedName, givenPriority, givenPreferences,
                                                       givenText)
{
}

VThreadCreator::~VThreadCreator() = default;

WeakPtr<VThreadCreator> VThreadCreator::findBest()
{
    return findBestVInputCreator(typeid(VThreadManager), {});
}

VThreadManager* VThreadCreator::getThreadManager()
{
    const WeakPtr<VThreadCreator> creator = findBest();
    return creator ? creator->getManager() : nullptr;
}

WeakPtr<VTask> VThreadCreator::CurrentThread()
{
    VThreadManager* const manager = getThreadManager();
    return manager ? manager->CurrentThread() : WeakPtr<VTask>();
}

} // namespace Quorl
