#include <quorl/tasks/ThreadManagerValue.h>

#include <quorl/foundation/FindOrNull.h>
#include <quorl/registry/VManagedObject.h>
#include <quorl/tasks/VThreadCreator.h>
#include <quorl/values/ValueMap.h>

namespace Quorl
{

template <>
bool VTypedValueBase<VThreadManager>::isDifferentFrom(const WeakPtr<VValueBase>& /*other*/) const
{
    return true;
}

using ThreadManagerValue = VValue<VThreadManager>;

template class TypedValueCreator<VThreadManager>;

TypedValueCreator<VThreadManager>& ThreadManagerValue::theTypedValueCreator =
    ThreadManagerValue::myTypedValueCreator();

TypedValueCreator<VThreadManager>& ThreadManagerValue::myTypedValueCreator()
{
    static TypedValueCreator<VThreadManager> creator;
    [[maybe_unused]] static const bool isRegistered =
        (VValueCreator::registerCreator(&creator, Tolmen::Typename(typeid(VThreadManager))), true);
    return creator;
}

ThreadManagerValue::Iterator::~Iterator() = default;

ThreadManagerValue::VValue(VThreadManager* initialManager,
                           const WeakPtr<VThreadCreator>& managersCreator)
    : manager(initialManager), creator_(managersCreator)
{
}

ThreadManagerValue::VValue(const VValue& other) : VValue(other.manager, other.creator_) {}

ThreadManagerValue::~VValue()
{
    ++TypedValueCreator<VThreadManager>::destroyedValues;
}

bool ThreadManagerValue::getValue(VThreadManager& datum) const
{
    return &datum == manager;
}

bool ThreadManagerValue::setValue(const VThreadManager& /*datum*/)
{
    return true;
}

bool ThreadManagerValue::getValueFrom(const WeakPtr<VValueBase>& other)
{
    const WeakPtr<VTypedValueBase<VThreadManager>> typed = other;
    if (typed && manager) return typed->getValue(*manager);
    const WeakPtr<ThreadManagerValue> alike = other;
    return alike && !manager && !alike->manager;
}

bool ThreadManagerValue::setValueFromText(const string& /*text*/)
{
    return false;
}

string ThreadManagerValue::Text() const
{
    const VThreadManager* const living = livingManager();
    return living ? VValueTrait<VThreadManager>::Text(*living) : string();
}

RefPtr<VValueBase> ThreadManagerValue::copy() const
{
    const RefPtr<VValueBase> copied(new VValue(*this));
    copied->components.copyComponents(components, copied);
    return copied;
}

WeakPtr<VManagedObject> ThreadManagerValue::source()
{
    return {};
}

Ageable& ThreadManagerValue::age()
{
    return *this;
}

const Ageable& ThreadManagerValue::age() const
{
    return *this;
}

WeakPtr<VValueCreator> ThreadManagerValue::getValueCreator() const
{
    return {};
}

RefPtr<Tolmen::Chunk<VThreadManager>>
ThreadManagerValue::getChunkOfValue(unsigned long long /*n*/) const
{
    return {};
}

VThreadManager* ThreadManagerValue::livingManager() const
{
    const bool hasEnded = creator_.referer && !creator_;
    return hasEnded ? nullptr : manager;
}

bool ThreadManagerValue::add(const RefPtr<VTask>& task, const string& name)
{
    if (!task || findTask(name)) return false;
    tasks[name] = task;
    try
    {
        task->activateNotification();
    }
    catch (...)
    {
        const auto taken = tasks.extract(name); // so that it can be added once more
        throw;
    }
    return true;
}

RefPtr<VTask> ThreadManagerValue::findTask(const string& name) const
{
    return Tolmen::findOrNull(tasks, name);
}

bool ThreadManagerValue::start(const RefPtr<VTask>& task)
{
    VThreadManager* const living = livingManager();
    return living && living->start(task);
}

bool ThreadManagerValue::wait(const RefPtr<VTask>& task) const
{
    VThreadManager* const living = livingManager();
    return living && living->wait(task);
}

bool ThreadManagerValue::isrunning(const RefPtr<VTask>& task) const
{
    VThreadManager* const living = livingManager();
    return living && living->isrunning(task);
}

bool ThreadManagerValue::suspend(const RefPtr<VTask>& /*task*/) const
{
    return false;
}

bool ThreadManagerValue::start(const string& name)
{
    const RefPtr<VTask> task = findTask(name);
    return task && start(task);
}

bool ThreadManagerValue::wait(const string& name)
{
    const RefPtr<VTask> task = findTask(name);
    return task && wait(task);
}

bool ThreadManagerValue::isrunning(const string& name) const
{
    const RefPtr<VTask> task = findTask(name);
    return task && isrunning(task);
}

bool ThreadManagerValue::suspend(const string& /*name*/)
{
    return false;
}

using ThreadManagerParameter = VValueParameter<VThreadManager>;

ThreadManagerParameter::VValueParameter(const RefPtr<ThreadManagerValue>& initialValue,
                                        const string& parameterName,
                                        const RefPtr<VCreationPreferences>& creationPreferences)
    : VParameter(initialValue, parameterName, creationPreferences),
      value(initialValue ? initialValue.rawptr() : nullptr)
{
}

ThreadManagerParameter::~VValueParameter() = default;

RefPtr<VParameter> ThreadManagerParameter::copy() const
{
    return {};
}

RefPtr<VValueBase>
ThreadManagerParameter::createLocalVariable(const RefPtr<ValuePool>& /*pool*/) const
{
    return {};
}

bool ThreadManagerParameter::setGlobalValue(const RefPtr<VValueBase>& /*given*/,
                                            const string& /*member*/) const
{
    return false;
}

RefPtr<VValueBase> ThreadManagerParameter::newValue() const
{
    return defaultValue ? value->copy() : RefPtr<VValueBase>();
}

} // namespace Quorl
