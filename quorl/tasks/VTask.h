#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>
#include <quorl/slots/VInputBase.h>

namespace Quorl
{

/// Work that a thread manager runs: an input of a parameter of managers
/// (`VValueParameter<VThreadManager>`), where it stands under a name.
///
/// It is made, added to the parameter's value, and started there, as often as wanted. Nobody can
/// end it but its own body, by returning; it can be asked to by a message.
class QUORL_API VTask : public VInputBase
{
public:
    explicit VTask(const WeakPtr<VParameter>& owner);
    ~VTask() override = 0;

    void valueChanged(const RefPtr<VValueBase>& value, const WeakPtr<ValuePool>& pool,
                      const ValueNotifierList* caller, const ValueMap* changes) override;
    bool SyncFromContextValue(const RefPtr<ValuePool>& pool, const string& member) override;

    /// Sends a message through the manager of the owner's value. \pre somebody owns this task.
    /// \return false without such an owner; otherwise what the manager answers.
    bool sendMessage(const RefPtr<VTaskMessage>& message) const;

    /// The task's body, for the manager to call, on whatever thread it has. The network belongs to
    /// another thread: results are to be handed over.
    virtual void run() = 0;
};

} // namespace Quorl
