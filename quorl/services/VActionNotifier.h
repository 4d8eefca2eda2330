#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>
#include <quorl/foundation/Intercube.h>
#include <quorl/foundation/Interface.h>
#include <quorl/foundation/RefPtr.h>

namespace Quorl
{

/// A subscriber of what the kernel does, and the channel on which it tells: to a user interface, to
/// a script recorder. The static operations send, the virtual ones in lower case receive.
///
/// A subscriber listens, with two exceptions: `attachPrefix` can object, and `progress` can ask for
/// a stop. There is no way to withdraw but to end. Exceptions of a subscriber pass to the sender.
///
/// Threads: no lock; subscribers are called on the thread of the sender, the oldest first, each
/// held by a strong handle in its call. One that is activated meanwhile is reached by the same
/// walk.
class QUORL_API VActionNotifier : public Tolmen::ReferenceBase<VActionNotifier>
{
public:
    struct WarnInfo
    {
        string origin;  ///< who or what the warning concerns
        string text;    ///< the warning in one line
        string details; ///< the reason
        int severity = 0;
    };

    /// Tells the creator of an object, and the subscribers, for which slot it is made.
    struct QUORL_API CreationSource : Tolmen::Interface<CreationSource>
    {
        explicit CreationSource(const WeakPtr<VSlot>& target);
        ~CreationSource() override;

        WeakPtr<VSlot> slot;
    };

    VActionNotifier();
    ~VActionNotifier() override;

    /// Subscribes. Twice means to be called twice.
    /// \return false while no strong handle holds this object, and once the process cleans up.
    bool activate();

    // What a subscriber may override; the defaults do nothing and object to nothing

    /// An object was made, and is ready. \param creator null where none made it, as for what was
    /// extracted from another object.
    virtual void createVObject(const RefPtr<VObject>& object, const Tolmen::Intercube& info,
                               const WeakPtr<VCreatorBase>& creator);

    /// An object leaves the registry. It may live on.
    virtual void deleteVObject(const string& name);
    virtual void warn(const string& text);
    virtual void warn(const WarnInfo& info);

    /// How far something has come: `current` of `total` steps, of the work that `id` stands for
    /// (see `getNewProgressID`). \return false to ask that it be given up.
    virtual bool progress(unsigned long id, const string& text, int current, int total);
    virtual void status(const string& text); ///< a line for people, such as that a load has failed

    /// A parameter is about to be put into a slot; null empties it. \return false to object.
    virtual bool attachPrefix(const RefPtr<VParameter>& parameter, const RefPtr<VSlot>& slot);
    virtual void attachPostfix(const RefPtr<VSlot>& slot); ///< it was, and that changed the slot

    /// A parameter has another value. \param context null where that is its value in all contexts.
    /// \param member the part of the value that was set; empty for the whole.
    virtual void changeParameter(const WeakPtr<VParameter>& parameter,
                                 const RefPtr<ValuePool>& context, const WeakPtr<VValueBase>& value,
                                 const string& member);

    // What is sent

    /// An object was made. Its own user info becomes that of `info`, if there is one, before
    /// anybody hears of it.
    static void VObjectCreation(const RefPtr<VObject>& object, const Tolmen::Intercube& info,
                                const WeakPtr<VCreatorBase>& creator);
    static void VObjectDeletion(const string& name);
    static void Warning(const string& text);
    static void Warning(const WarnInfo& info);

    /// Asks all subscribers. \return whether to go on: false if any answered so.
    static bool ProgressInfo(unsigned long id, const string& text, int current, int total);
    static void StatusInfo(const string& text);

    /// Asks whether a parameter may be attached; the first to object ends it. \pre `slot` is alive.
    static bool AttachParameterPrefix(const RefPtr<VParameter>& parameter,
                                      const RefPtr<VSlot>& slot);
    static void AttachParameterPostfix(const RefPtr<VSlot>& slot);
    static void ChangeParameter(const WeakPtr<VParameter>& parameter,
                                const RefPtr<ValuePool>& context, const WeakPtr<VValueBase>& value,
                                const string& member);

    /// Whether there is anybody to be told; those that have ended since count.
    static bool hasSubscribers();

    static unsigned long getNewProgressID(); ///< 1, 2, ...
};

} // namespace Quorl

namespace Tolmen
{
extern template class ReferenceBase<Quorl::VActionNotifier>;
} // namespace Tolmen
