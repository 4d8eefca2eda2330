#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>
#include <quorl/slots/VSlotContainer.h>

namespace Quorl
{

/// A slot container that can be wired to others and has a say in it.
class QUORL_API VConnectable : public VSlotContainer
{
public:
    VConnectable();
    ~VConnectable() override;

    using VSlotContainer::attach;

    /// A filtered form of what is to be connected; null, the default, if there is none.
    virtual RefPtr<VParameter> CreatedFilteredConnection(const RefPtr<VParameter>& parameter);

    /// Lets an object rebuild its inputs around a new connection.
    virtual void adjustConnections(const RefPtr<VSlot>& slot, const RefPtr<VParameter>& parameter);
};

} // namespace Quorl
