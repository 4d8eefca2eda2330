#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>
#include <quorl/foundation/RefPtr.h>
#include <quorl/registry/VAcception.h>
#include <quorl/registry/VManagedObject.h>

#include <list>

namespace Quorl
{

/// What could be made downstream of an object. Never empty: where nothing accepts, there is no
/// list.
///
/// Threads: the one that edits the network.
class QUORL_API VAcceptList : public Tolmen::ReferenceBase<VAcceptList>,
                              public std::list<VAcception>
{
public:
    VAcceptList();
    ~VAcceptList() override;

    /// Asks all creators with a priority in [from, to) which ways of taking `object` they accept.
    /// \return their answers by ascending priority of the creators, whatever the weights; a null
    /// handle if there is none, or for a dead object.
    static RefPtr<VAcceptList> getAcceptors(const RefPtr<VObject>& object,
                                            int from = VManagedObject::kFirstPriority,
                                            int to = VManagedObject::kLastPriority);
};

/// A place for a breakpoint or a trace; it does nothing.
class QUORL_API VAcceptListTracer
{
public:
    static void trace(const RefPtr<VCreatorBase>& creator, const RefPtr<VObject>& object,
                      const string& text);
};

} // namespace Quorl

namespace Tolmen
{
extern template class ReferenceBase<Quorl::VAcceptList>;
} // namespace Tolmen
