#include <quorl/foundation/Typename.h>
#include <quorl/objects/VObject.h>
#include <quorl/registry/VAcceptInfo.h>
#include <quorl/registry/VAcception.h>
#include <quorl/registry/VCreatorBase.h>
#include <quorl/registry/VInputCreator.h>
#include <quorl/services/VActionNotifier.h>
#include <quorl/slots/VParameter.h>
#include <quorl/slots/VSlot.h>

#include <cstdio>

/// The objects that are made for one, upstream and downstream of it.
namespace Quorl
{
namespace
{

string sourceLocationOf(const VObject& object)
{
    return object.Creator && object.Creator->text ? object.Creator->text : string();
}

/// What the subscribers are told of a child that does not take what its creator accepted.
string refusal(const VObject& parent, const VObject& child, const VParameter& offered,
               const std::type_info& wanted)
{
    string text = "Type <I>" + Tolmen::Typename(wanted) +
                  "</I> as requested by an Object Creator (actually found output parameter type is "
                  "<I>" +
                  Tolmen::Typename(offered.getType()) +
                  "</I> ) was not accepted by newly created child object <B>" + child.getName() +
                  "</B>.<P>Note that this could be a problem due to mismatch of parameter "
                  "constraints, such as a mismatch of a Creator's requested input parameter type, "
                  "and the parameters that the child object <B>" +
                  child.getName() + "</B> (type <I>" + child.type_key() +
                  " ) </I> actually is able to digest.";
    if (const string location = sourceLocationOf(child); !location.empty())
        text +=
            " It's source code can be found in <A HREF=\"" + location + "\">" + location + "</A>.";
    return text +
           "<P>"
           " All input parameters in this new child object may possibly define constraints (e.g. "
           "an acceptable input field type)  that are more restrictive than the associated "
           "creator's specified input and thus cannot be connected to the available output "
           "parameter <I>" +
           offered.Name() + "</I> as currently provided by <B>" + parent.getName() + "</B>.";
}

VObject::ObjectAndSlot connectOutput(const VObject& parent, const RefPtr<VObject>& child,
                                     const RefPtr<VParameter>& offered,
                                     const std::type_info& wanted)
{
    const RefPtr<VSlot> slot = child->Connect(offered);
    if (!slot)
    {
        VActionNotifier::Warning(refusal(parent, *child, *offered, wanted));
        return {};
    }
    VSlotSet connected;
    connected.insertSlot(slot, false);
    child->initialize(connected);
    return {child, slot};
}

VObject::ObjectAndSlot connectInterface(VObject& parent, const RefPtr<VObject>& child,
                                        const VAcceptInfo& info)
{
    if (!info.interface)
    {
        std::printf("VObject::createChild(): No implementation type %s found in %s...\n",
                    Tolmen::Typename(*info.type).c_str(), parent.getName().c_str());
        return {};
    }
    const RefPtr<VSlot> slot = child->ConnectInterface(&parent, info.interface);
    if (slot) return {child, slot};
    std::printf("VObject::createChild(): No INTERFACE slot type %s found in %s...\n",
                Tolmen::Typename(*info.type).c_str(), parent.getName().c_str());
    return {};
}

} // namespace

RefPtr<VObject> VObject::createInput(const WeakPtr<VCreatorBase>& creator,
                                     const RefPtr<VSlot>& slot, const string& objectName,
                                     Tolmen::Intercube& context)
{
    if (!creator || !slot) return {};
    context.addInterface(new VActionNotifier::CreationSource(slot));
    const RefPtr<VObject> object = creator->create(objectName, context);
    if (!object) return {};

    const RefPtr<VSlot> output = object->getImplementationSlot(slot->getType(), "", "");
    if (!output) return object;
    const RefPtr<VParameter> before = slot->Parameter;
    if (VSlotContainer::attach(before, output->Parameter, output->Member) == AttachOk)
        InputCreation(before, object, output->Parameter);
    return object;
}

void VObject::InputCreation(const RefPtr<VParameter>& /*slotParameter*/,
                            const RefPtr<VObject>& /*newObject*/,
                            const RefPtr<VParameter>& /*newParameter*/)
{
}

int VObject::attachNewObject(const RefPtr<VSlot>& slot, const string& objectName,
                             const Tolmen::Intercube& context,
                             const RefPtr<VCreationPreferences>& preferences)
{
    if (!slot || !slot->Parameter) return AttachSourceNotFound;
    const WeakPtr<VCreatorBase> creator = findBestVInputCreator(slot->getType(), preferences);
    if (!creator) return AttachSourceNotFound;
    const Tolmen::Intercube told(context);
    if (preferences) told.addInterface(preferences);
    const RefPtr<VObject> object = creator->create(objectName, told);
    if (!object) return AttachSourceNotFound;
    return VSlotContainer::attach(slot->Parameter,
                                  object->getImplementation(slot->getType(), "", ""), "");
}

RefPtr<VObject> VObject::extractSlot(const RefPtr<VSlot>& slot, const Tolmen::Intercube& context,
                                     const string& objectName) const
{
    if (!slot || !slot->Parameter) return {};
    const RefPtr<VObject> object(new VObject(objectName + slot->Name, 0, {}));
    try
    {
        object->addParameter(slot->Name, 0, slot->Parameter, false);
        object->registerOutput(slot->Parameter, slot->Name);
    }
    catch (...)
    {
        object->VManagedObject::remove(); // nobody would know what it lacks
        throw;
    }
    VActionNotifier::VObjectCreation(object, context, {});
    return object;
}

VObject::ObjectAndSlot VObject::connectChild(const RefPtr<VObject>& child,
                                             const RefPtr<VAcceptInfo>& info)
{
    if (!child || !info) return {};
    const RefPtr<VParameter> offered = getImplementation(*info->type, info->name, "");
    return offered ? connectOutput(*this, child, offered, *info->type)
                   : connectInterface(*this, child, *info);
}

VObject::ObjectAndSlot VObject::connectAsChild(const RefPtr<VObject>& child,
                                               const VAcception& acception)
{
    return connectChild(child, acception.info);
}

VObject::ObjectAndSlot operator>=(const RefPtr<VObject>& child, const RefPtr<VObject>& parent)
{
    if (!child || !parent) return {};
    const WeakPtr<VCreatorBase> creator = child->Creator;
    if (!creator) return {};
    const VAcceptInfoList ways = creator->accept(parent);
    if (ways.empty() || !ways.front()) return {};
    return parent->connectAsChild(child, VAcception(ways.front(), creator));
}

VObject::ObjectAndSlot VObject::createChild(const VAcception& acception,
                                            const Tolmen::Intercube& context)
{
    const RefPtr<VCreatorBase> creator = acception.creator;
    if (!creator) return {};
    const string childName = creator->createChildname(WeakVObjectPtr(this), acception.info);
    return connectChild(creator->create(childName, context), acception.info);
}

} // namespace Quorl
