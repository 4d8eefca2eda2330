#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>
#include <quorl/slots/VValueParameter.h>
#include <quorl/tasks/VTask.h>
#include <quorl/tasks/VThreadManager.h>
#include <quorl/values/VValue.h>

#include <map>

/// A thread manager as a value, so that an object can offer it through a slot and keep its tasks
/// there. It stands for one manager for good: reading tests for it, and writing changes nothing.
namespace Quorl
{

/// Two of them always differ: managers cannot be compared.
template <>
QUORL_API bool
VTypedValueBase<VThreadManager>::isDifferentFrom(const WeakPtr<VValueBase>& other) const;

/// A manager, and the tasks that were added under names.
///
/// Threads: adding belongs to the thread that sets objects up; what is forwarded is as safe as the
/// manager makes it.
template <>
class QUORL_API VValue<VThreadManager> : public VTypedValueBase<VThreadManager>,
                                         public virtual Ageable
{
public:
    /// Visits tasks; true goes on. The kernel walks nowhere with it.
    class QUORL_API Iterator
    {
    public:
        virtual ~Iterator();
        virtual bool apply(const string& name, const RefPtr<VTask>& task) = 0;
    };

    /// \param initialManager null for none, and then nothing can be started.
    /// \param managersCreator with which the manager ends, as it does when their module leaves;
    /// nothing can be started any more then. Without one the manager outlives the value.
    explicit VValue(VThreadManager* initialManager = nullptr,
                    const WeakPtr<VThreadCreator>& managersCreator = {});
    VValue(const VValue& other); ///< the manager alone
    ~VValue() override;

    /// \return whether `datum` is the manager itself.
    bool getValue(VThreadManager& datum) const override;
    bool
    setValue(const VThreadManager& datum) override; ///< Deliberate: changes nothing. \return true

    /// \return whether the other stands for the same manager. Takes nothing over.
    bool getValueFrom(const WeakPtr<VValueBase>& other) override;
    bool setValueFromText(const string& text) override; ///< \return false
    string Text() const override;                       ///< empty

    /// With the same manager, without the tasks.
    RefPtr<VValueBase> copy() const override;

    WeakPtr<VManagedObject> source() override;
    Ageable& age() override;
    const Ageable& age() const override;
    WeakPtr<VValueCreator> getValueCreator() const override;
    RefPtr<Tolmen::Chunk<VThreadManager>> getChunkOfValue(unsigned long long n) const override;

    VThreadManager* livingManager() const; ///< null if there is none, or none any more

    /// Puts a task under a name, and makes it an observer of its owner.
    /// \return false if it is dead, or the name belongs to a live task, which stays.
    bool add(const RefPtr<VTask>& task, const string& name);
    RefPtr<VTask> findTask(const string& name) const;

    // Forwarded to the manager, whether the task was added or not

    bool start(const RefPtr<VTask>& task);
    bool wait(const RefPtr<VTask>& task) const;
    bool isrunning(const RefPtr<VTask>& task) const;
    bool suspend(const RefPtr<VTask>& task) const; ///< Deliberate: does nothing. \return false

    // Likewise for the live task of a name; false if there is none

    bool start(const string& name);
    bool wait(const string& name);
    bool isrunning(const string& name) const;
    bool suspend(const string& name); ///< Deliberate: does nothing. \return false

    static TypedValueCreator<VThreadManager>& theTypedValueCreator;
    static TypedValueCreator<VThreadManager>& myTypedValueCreator();

    VThreadManager* manager; ///< not owned, and may have ended: see `livingManager`
    std::map<string, RefPtr<VTask>> tasks;

private:
    const WeakPtr<VThreadCreator> creator_; // null for a manager that outlives this
};

/// There is the default value and no other: none for a pool, and no second parameter.
template <>
class QUORL_API VValueParameter<VThreadManager> : public VParameter
{
public:
    /// \param initialValue null makes a parameter of no type.
    VValueParameter(const RefPtr<VValue<VThreadManager>>& initialValue, const string& parameterName,
                    const RefPtr<VCreationPreferences>& creationPreferences = {});
    ~VValueParameter() override;

    RefPtr<VParameter> copy() const override;
    RefPtr<VValueBase> createLocalVariable(const RefPtr<ValuePool>& pool) const override;
    bool setGlobalValue(const RefPtr<VValueBase>& given, const string& member) const override;

    /// A value with the same manager and no tasks; null if there is no default value.
    RefPtr<VValueBase> newValue() const override;

    VValue<VThreadManager>* value; ///< the default value, which the base owns; may be null
};

} // namespace Quorl
