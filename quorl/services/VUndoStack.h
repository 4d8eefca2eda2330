#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>
#include <quorl/foundation/Interface.h>
#include <quorl/services/VUndoAction.h>

#include <deque>

namespace Quorl
{

/// The changes of one subject that can be taken back, newest first.
///
/// Owns its actions. Each addition also leaves a redirecting entry on the global stack, so that a
/// global undo takes back the newest change of the application. The two are not kept in step: an
/// undo made here leaves that entry, which will take back the next older action of this stack.
///
/// Threads: the one that changes the network. No lock.
class QUORL_API VUndoStack : public Tolmen::Interface<VUndoStack>
{
public:
    VUndoStack();
    VUndoStack(const VUndoStack&) = delete;
    VUndoStack& operator=(const VUndoStack&) = delete;
    ~VUndoStack() override;

    /// Records the order of changes over the whole application. Its actions end in the clean-up of
    /// statics.
    static VUndoStack& GlobalUndoStack();

    /// Puts `action` on top, and a redirecting entry on the global stack, which is then cut to its
    /// 100 newest entries. What is added to the global stack itself is not bounded.
    /// \pre `action` is alive.
    void AddAction(const RefPtr<VUndoAction>& action);

    /// Takes the newest action back, then drops it, whatever it answered.
    /// \return the action's answer; false if the stack is empty.
    /// \throws what the action throws; the action then stays on the stack.
    bool undo();

    int size() const;

    /// Cuts the stack, now, to its `n` newest entries. \return their number; -1 for a negative `n`,
    /// which changes nothing. Actions that end by it may use any stack, and let go of this one.
    int setSize(int n);

    string name;

private:
    std::deque<RefPtr<VUndoAction>> actions_; // front is the newest
};

} // namespace Quorl
