#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>
#include <quorl/slots/VSlotContainer.h>

namespace Quorl
{

/// A slot container that can be wired to others: by names, by an offered parameter, or by the type
/// that an input needs.
///
/// All attachments are those of `VSlotContainer::attachParameter`: observers may object, ages move,
/// validators are tainted.
///
/// Threads: the one that edits the network. A request under way sees the old or the new parameter;
/// the next one finds the new connection.
class QUORL_API VConnectable : public VSlotContainer
{
public:
    VConnectable();
    ~VConnectable() override;

    using VSlotContainer::attach;

    /// Attaches a parameter to the first input that it can replace, whether that is connected or
    /// not, then calls `adjustConnections`.
    /// \return the input, also if an observer objected; null if there is none, which is said on
    /// standard output, and for a null parameter.
    RefPtr<VSlot> Connect(const RefPtr<VParameter>& parameter);

    /// Attaches by names. `output` is first looked for among the inputs of `source`, which may show
    /// a parameter to be shared, then among its outputs.
    /// \return `AttachOk` for a shared parameter, `AttachToOutput` for an output; otherwise why it
    /// was not possible. Objections of observers are not told.
    AttachErrorCode attach(const string& input, VSlotContainer& source, const string& output);

    /// Attaches what the input `parameterName` of `source` shows to the input of this object that
    /// shows `destination`. A dead `source` shows nothing.
    AttachErrorCode attach(const RefPtr<VParameter>& destination,
                           const RefPtr<VSlotContainer>& source, const string& parameterName,
                           const string& member);

    /// Attaches the output of that type that some object of the registry has.
    /// \param unique whether the choice has to be obvious: several candidates are as good as none.
    AttachErrorCode attachUniqueObject(const RefPtr<VParameter>& parameter,
                                       const RefPtr<VCreationPreferences>& preferences,
                                       bool unique);
    AttachErrorCode attachUniqueObject(const RefPtr<VSlot>& slot,
                                       const RefPtr<VCreationPreferences>& preferences,
                                       bool unique);

    /// Cuts an input, and leaves it a copy of what it showed, so that the object goes on with its
    /// last value.
    /// \return a negative code for a null slot, an empty one, and a parameter without copies, of
    /// which none changes.
    AttachErrorCode detachSlot(const RefPtr<VSlot>& slot);

    /// Gives an interface to the value of the first input of `container` that is of its type, and
    /// makes that value younger.
    /// \return the input; null if there is none, and for a null interface.
    RefPtr<VSlot> ConnectInterface(const RefPtr<VSlotContainer>& container,
                                   const RefPtr<Tolmen::InterfaceBase>& interface);

    /// Deliberate: does nothing. \return true.
    bool setObjectAsChild(const RefPtr<VConnectable>& child, const string& name);

    /// A filtered form of what is to be connected; null, the default, if there is none.
    virtual RefPtr<VParameter> CreatedFilteredConnection(const RefPtr<VParameter>& parameter);

    /// Lets an object rebuild its inputs around a new connection.
    virtual void adjustConnections(const RefPtr<VSlot>& slot, const RefPtr<VParameter>& parameter);
};

} // namespace Quorl
