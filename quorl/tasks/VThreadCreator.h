#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>
#include <quorl/registry/VInputCreator.h>

namespace Quorl
{

extern template class VInputCreator<VThreadManager, VInputCreatorBase>;

/// Hands out a thread manager: what a module registers to bring threads in. Without one, there are
/// no threads, which is no error.
class QUORL_API VThreadCreator : public VInputCreator<VThreadManager, VInputCreatorBase>
{
public:
    /// \param name in the domain of input creators. \param text kept, not copied; may be null.
    VThreadCreator(const string& name, int priority,
                   const RefPtr<VCreationPreferences>& preferences, const char* text);
    ~VThreadCreator() override;

    /// \return the manager, which stays the creator's.
    virtual VThreadManager* getManager() = 0;

    /// The creator that is found first for the type; looked up at each call, which may load the
    /// module of one that only the cache knows.
    /// \return null if there is none.
    static WeakPtr<VThreadCreator> findBest();

    /// The manager of that creator, with which it ends; null if there is none.
    static VThreadManager* getThreadManager();

    /// The task that the caller runs under; null outside of all, and without a manager. To be
    /// called from any thread.
    static WeakPtr<VTask> CurrentThread();
};

} // namespace Quorl
