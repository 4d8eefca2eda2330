#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>
#include <quorl/foundation/RefPtr.h>
#include <quorl/tasks/ThreadManagerValue.h>

namespace Quorl
{

/// Lets an object run named tasks beside its updates: a member of the object that adds one input to
/// it, through which the thread manager is reached.
///
/// The manager is chosen when this is made; one that comes later is not seen. Without a manager all
/// operations answer false, or null, and nothing is said; when the manager has ended with its
/// module, so nothing can be started, and nothing runs.
///
/// It has no state but its two handles: the tasks live as long as the object holds the parameter.
class QUORL_API VCotask
{
public:
    /// Adds the input, in place of one of the same name and level.
    /// \throws std::logic_error for a null name.
    VCotask(VObject* object, const char* name, int expertLevel);

    /// Neither removes the input nor stops a task.
    ~VCotask();

    /// Makes the parameter the owner of a task, and puts the task under a name.
    /// \return the task; null if the name belongs to another, whose owner has been set all the
    /// same.
    RefPtr<VTask> addTask(const RefPtr<VTask>& task, const string& name);
    RefPtr<VTask> findTask(const string& name) const;

    bool run(const string& name) const; ///< \return whether it was started
    bool run(const RefPtr<VTask>& task) const;

    bool isrunning(const string& name) const;
    bool isrunning(const RefPtr<VTask>& task) const;

    RefPtr<VValueParameter<VThreadManager>> TaskParameter;
    RefPtr<VSlot> TaskSlot;

private:
    RefPtr<VValue<VThreadManager>> value() const; ///< null if there is no manager
};

} // namespace Quorl
