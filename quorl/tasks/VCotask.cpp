#include <quorl/tasks/VCotask.h>

#include <quorl/objects/VObject.h>
#include <quorl/slots/VSlot.h>
#include <quorl/tasks/VThreadCreator.h>

namespace Quorl
{
namespace
{

RefPtr<VValueParameter<VThreadManager>> makeParameter()
{
    RefPtr<VValue<VThreadManager>> value;
    const WeakPtr<VThreadCreator> creator = VThreadCreator::findBest();
    if (VThreadManager* const manager = creator ? creator->getManager() : nullptr)
        value = RefPtr<VValue<VThreadManager>>(new VValue<VThreadManager>(manager, creator));
    return RefPtr<VValueParameter<VThreadManager>>(new VValueParameter<VThreadManager>(value, ""));
}

} // namespace

VCotask::VCotask(VObject* object, const char* name, int expertLevel)
    : TaskParameter(makeParameter()),
      TaskSlot(object->addParameter(name, expertLevel, TaskParameter, true))
{
}

VCotask::~VCotask() = default;

RefPtr<VTask> VCotask::addTask(const RefPtr<VTask>& task, const string& name)
{
    const RefPtr<VValue<VThreadManager>> tasks = value();
    if (!tasks || !task) return {};
    task->setOwner(TaskParameter);
    return tasks->add(task, name) ? task : RefPtr<VTask>();
}

RefPtr<VTask> VCotask::findTask(const string& name) const
{
    const RefPtr<VValue<VThreadManager>> tasks = value();
    return tasks ? tasks->findTask(name) : RefPtr<VTask>();
}

bool VCotask::run(const string& name) const
{
    const RefPtr<VValue<VThreadManager>> tasks = value();
    return tasks && tasks->start(name);
}

bool VCotask::run(const RefPtr<VTask>& task) const
{
    const RefPtr<VValue<VThreadManager>> tasks = value();
    return tasks && tasks->start(task);
}

bool VCotask::isrunning(const string& name) const
{
    const RefPtr<VValue<VThreadManager>> tasks = value();
    return tasks && tasks->isrunning(name);
}

bool VCotask::isrunning(const RefPtr<VTask>& task) const
{
    const RefPtr<VValue<VThreadManager>> tasks = value();
    return tasks && tasks->isrunning(task);
}

RefPtr<VValue<VThreadManager>> VCotask::value() const
{
    return TaskParameter->getValue({}, "");
}

} // namespace Quorl
