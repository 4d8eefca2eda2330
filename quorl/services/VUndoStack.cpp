#include <quorl/services/VUndoStack.h>

#include <quorl/foundation/AtCleanUp.h>

namespace Quorl
{
namespace
{

constexpr int kGlobalBound = 100;

/// Stands on the global stack for an addition to another one, and takes back whatever is on top of
/// that by then.
class SetUndoStack final : public VUndoAction
{
public:
    SetUndoStack(const string& description, const WeakPtr<VUndoStack>& stack)
        : VUndoAction(description), stack_(stack)
    {
    }

    bool undo() override { return stack_ && stack_->undo(); }

private:
    const WeakPtr<VUndoStack> stack_;
};

} // namespace

VUndoStack::VUndoStack() = default;
VUndoStack::~VUndoStack() = default;

VUndoStack& VUndoStack::GlobalUndoStack()
{
    static auto& stack = *new VUndoStack;
    static const Tolmen::AtCleanUp end([] { Tolmen::emptySteadily(stack.actions_); });
    return stack;
}

void VUndoStack::AddAction(const RefPtr<VUndoAction>& action)
{
    actions_.push_front(action);
    VUndoStack& global = GlobalUndoStack();
    if (this == &global) return;
    try
    {
        global.actions_.push_front(new SetUndoStack(action->text, WeakPtr<VUndoStack>(this)));
    }
    catch (...)
    {
        actions_.pop_front(); // both or none
        throw;
    }
    global.setSize(kGlobalBound);
}

bool VUndoStack::undo()
{
    if (actions_.empty()) return false;
    const RefPtr<VUndoStack> held = Tolmen::heldIfOwned(WeakPtr<VUndoStack>(this)); // by its action
    const RefPtr<VUndoAction> newest = actions_.front();
    const bool answer = newest->undo();
    // Deliberate: whatever is in front by now, should the action have added or undone others.
    if (actions_.empty()) return answer;
    const RefPtr<VUndoAction> dropped = actions_.front();
    actions_.pop_front(); // ends when the stack is whole
    return answer;
}

int VUndoStack::size() const
{
    return static_cast<int>(actions_.size());
}

int VUndoStack::setSize(int n)
{
    if (n < 0) return -1;
    const RefPtr<VUndoStack> held = Tolmen::heldIfOwned(WeakPtr<VUndoStack>(this)); // by an action
    while (size() > n)
    {
        const RefPtr<VUndoAction> oldest = actions_.back();
        actions_.pop_back(); // ends when the stack is whole
    }
    return size();
}

} // namespace Quorl
