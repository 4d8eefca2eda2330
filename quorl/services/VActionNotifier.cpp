#include <quorl/services/VActionNotifier.h>

#include <quorl/objects/VObject.h> // a new object is given its user info here
#include <quorl/objects/VObjectUserInfo.h>
#include <quorl/slots/VParameter.h>
#include <quorl/slots/VSlot.h>
#include <quorl/values/VValueBase.h>
#include <quorl/values/ValuePool.h>

#include <cstdint>
#include <list>

namespace Tolmen
{
template class ReferenceBase<Quorl::VActionNotifier>;
} // namespace Tolmen

namespace Quorl
{
namespace
{

/// Outside of the list, so that it can be asked after the list has gone.
constinit bool ActionNotifierListIsAvailable = true;

struct NotifierList
{
    std::list<WeakPtr<VActionNotifier>> subscribers;

    NotifierList() = default;
    NotifierList(const NotifierList&) = delete;
    NotifierList& operator=(const NotifierList&) = delete;
    ~NotifierList() { ActionNotifierListIsAvailable = false; }
};

std::list<WeakPtr<VActionNotifier>>& theNotifiers()
{
    static NotifierList list;
    return list.subscribers;
}

/// Calls `deliver` for each live subscriber in the order of activation, until it answers false. The
/// strong handle keeps a subscriber alive in its own call; the dead stay in the list.
/// \return false if the list is not available any more, and if a call answered false.
template <class Deliver>
bool broadcast(Deliver&& deliver)
{
    if (!ActionNotifierListIsAvailable) return false;
    for (const WeakPtr<VActionNotifier>& entry : theNotifiers())
        if (const RefPtr<VActionNotifier> subscriber = entry; subscriber && !deliver(*subscriber))
            return false;
    return true;
}

/// The same for what nobody can object to.
template <class Tell>
void tellAll(Tell&& tell)
{
    broadcast([&](VActionNotifier& subscriber) {
        tell(subscriber);
        return true;
    });
}

void takeUserInfo(VObject& object, const Tolmen::Intercube& info)
{
    const RefPtr<VObjectUserInfo> given = info.findInterface(typeid(VObjectUserInfo));
    if (!given) return;
    object.UserInfo = given->text;
    const Tolmen::Intercube& cube = object;
    if (const RefPtr<VObjectUserInfo> present = cube.findInterface(typeid(VObjectUserInfo)))
        present->text = given->text;
    else
        cube.addInterface(new VObjectUserInfo(given->text));
}

} // namespace

VActionNotifier::CreationSource::CreationSource(const WeakPtr<VSlot>& target) : slot(target) {}
VActionNotifier::CreationSource::~CreationSource() = default;

VActionNotifier::VActionNotifier() = default;
VActionNotifier::~VActionNotifier() = default;

bool VActionNotifier::activate()
{
    if (!ActionNotifierListIsAvailable) return false;
    if (self.referer && self.referer->isUnowned()) return false;
    theNotifiers().emplace_back(this);
    return true;
}

void VActionNotifier::createVObject(const RefPtr<VObject>& /*object*/,
                                    const Tolmen::Intercube& /*info*/,
                                    const WeakPtr<VCreatorBase>& /*creator*/)
{
}

void VActionNotifier::deleteVObject(const string& /*name*/) {}

void VActionNotifier::warn(const string& /*text*/) {}

void VActionNotifier::warn(const WarnInfo& /*info*/) {}

bool VActionNotifier::progress(unsigned long /*id*/, const string& /*text*/, int /*current*/,
                               int /*total*/)
{
    return true;
}

void VActionNotifier::status(const string& /*text*/) {}

bool VActionNotifier::attachPrefix(const RefPtr<VParameter>& /*parameter*/,
                                   const RefPtr<VSlot>& /*slot*/)
{
    return true;
}

void VActionNotifier::attachPostfix(const RefPtr<VSlot>& /*slot*/) {}

void VActionNotifier::changeParameter(const WeakPtr<VParameter>& /*parameter*/,
                                      const RefPtr<ValuePool>& /*context*/,
                                      const WeakPtr<VValueBase>& /*value*/,
                                      const string& /*member*/)
{
}

void VActionNotifier::VObjectCreation(const RefPtr<VObject>& object, const Tolmen::Intercube& info,
                                      const WeakPtr<VCreatorBase>& creator)
{
    if (object) takeUserInfo(*object, info);
    tellAll([&](VActionNotifier& to) { to.createVObject(object, info, creator); });
}

void VActionNotifier::VObjectDeletion(const string& name)
{
    tellAll([&](VActionNotifier& to) { to.deleteVObject(name); });
}

void VActionNotifier::Warning(const string& text)
{
    tellAll([&](VActionNotifier& to) { to.warn(text); });
}

void VActionNotifier::Warning(const WarnInfo& info)
{
    tellAll([&](VActionNotifier& to) { to.warn(info); });
}

bool VActionNotifier::ProgressInfo(unsigned long id, const string& text, int current, int total)
{
    bool goesOn = true;
    const bool wasSent = broadcast([&](VActionNotifier& to) {
        if (!to.progress(id, text, current, total)) goesOn = false;
        return true; // all are asked, unlike for an objection
    });
    return wasSent && goesOn;
}

void VActionNotifier::StatusInfo(const string& text)
{
    tellAll([&](VActionNotifier& to) { to.status(text); });
}

bool VActionNotifier::AttachParameterPrefix(const RefPtr<VParameter>& parameter,
                                            const RefPtr<VSlot>& slot)
{
    if (!ActionNotifierListIsAvailable) return false; // and the owner may be ending
    const RefPtr<VSlotContainer> owner = slot->Owner; // not to vanish in a subscriber's call
    return broadcast([&](VActionNotifier& to) { return to.attachPrefix(parameter, slot); });
}

void VActionNotifier::AttachParameterPostfix(const RefPtr<VSlot>& slot)
{
    tellAll([&](VActionNotifier& to) { to.attachPostfix(slot); });
}

void VActionNotifier::ChangeParameter(const WeakPtr<VParameter>& parameter,
                                      const RefPtr<ValuePool>& context,
                                      const WeakPtr<VValueBase>& value, const string& member)
{
    tellAll([&](VActionNotifier& to) { to.changeParameter(parameter, context, value, member); });
}

bool VActionNotifier::hasSubscribers()
{
    return ActionNotifierListIsAvailable && !theNotifiers().empty();
}

unsigned long VActionNotifier::getNewProgressID()
{
    static std::uint32_t CurrentProgressID = 1;
    return CurrentProgressID++;
}

} // namespace Quorl
