#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>
#include <quorl/foundation/RefPtr.h>

namespace Quorl
{

/// A change that can be taken back.
class QUORL_API VUndoAction : public Tolmen::ReferenceBase<VUndoAction>
{
public:
    explicit VUndoAction(const string& description);
    ~VUndoAction() override = 0;

    /// Takes the change back. \return what that means is the action's affair.
    virtual bool undo() = 0;

    string text; ///< describes the change
};

} // namespace Quorl

namespace Tolmen
{
extern template class ReferenceBase<Quorl::VUndoAction>;
} // namespace Tolmen
