#include <quorl/kit/ClassCreator.h>

#include <quorl/modules/LoadScope.h>
#include <quorl/modules/VLoaderInfo.h>
#include <quorl/modules/VModule.h> // completes its handles
#include <quorl/modules/VModules.h>
#include <quorl/objects/VObject.h>
#include <quorl/registry/VInputCreator.h>
#include <quorl/services/VActionNotifier.h>
#include <quorl/slots/VOutputIterator.h>
#include <quorl/slots/VParameter.h>
#include <quorl/slots/VSlot.h>
#include <quorl/tasks/VThreadManager.h>

#include <functional>

namespace Quorl
{
namespace
{

VCreatorProperties propertiesOf(const string& key, const CreatorTraits& traits)
{
    VCreatorProperties properties(key, traits.summary, traits.description);
    properties.element[VCreatorProperties::AuthorName] = traits.author;
    properties.element[VCreatorProperties::Applications] = traits.applications;
    return properties;
}

/// Whether others may show a parameter when its object has ended, or tasks run under it.
bool outlives(const VParameter& parameter, const RefPtr<VObject>& object)
{
    return parameter.creator == object || parameter.getType() == typeid(VThreadManager);
}

/// Adds a hold to what shall keep a module loaded together with an object.
class Keep final : public VOutputIterator
{
public:
    Keep(const RefPtr<VObject>& object, const RefPtr<VModuleHold>& hold)
        : object_(object), hold_(hold)
    {
    }

    void in(const VSlot& slot) const
    {
        if (slot.Parameter && outlives(*slot.Parameter, object_))
            slot.Parameter->addInterface(hold_);
    }

    bool apply(const std::type_info& /*type*/, const RefPtr<VSlot>& slot) override
    {
        in(*slot);
        return true;
    }

private:
    const RefPtr<VObject> object_;
    const RefPtr<VModuleHold> hold_;
};

void keepModuleLoaded(const RefPtr<VObject>& object, const RefPtr<VModuleHold>& hold)
{
    object->addInterface(hold);
    Keep keep(object, hold);
    object->iterate_inputs(std::function<bool(VSlot&, int)>([&](const VSlot& slot, int) {
        keep.in(slot);
        return true;
    }));
    object->iterateOutputs(keep, typeid(void));
}

} // namespace

ClassCreator::ClassCreator(const string& key, const CreatorTraits& traits)
    : VCreatorBase(propertiesOf(key, traits), traits.priority, traits.preferences, traits.isPinned,
                   traits.text),
      module_(LoadScope::innermost()), accepts_(traits.accepts), provides_(traits.provides)
{
    for (const Tolmen::TypeInfo& type : provides_)
        registerVInput(type.get(), WeakPtr<VInputCreatorBase>(this));
}

ClassCreator::~ClassCreator()
{
    for (const Tolmen::TypeInfo& type : provides_)
        unregisterVInput(type.get(), WeakPtr<VInputCreatorBase>(this));
}

RefPtr<VObject> ClassCreator::create(const string& wantedName, const Tolmen::Intercube& context)
{
    constexpr int kObjectPriority = 0;
    const RefPtr<VModuleHold> hold = moduleHold(); // whatever the object does while it is made
    RefPtr<VObject> object = make(wantedName.empty() ? element[Name] : wantedName, kObjectPriority,
                                  context.findInterface(typeid(VCreationPreferences)));
    try
    {
        complete(object, hold, context);
    }
    catch (...)
    {
        object->VManagedObject::remove(); // nobody gets it, and its code may go
        throw;
    }
    return object;
}

void ClassCreator::complete(const RefPtr<VObject>& object, const RefPtr<VModuleHold>& hold,
                            const Tolmen::Intercube& context)
{
    const WeakPtr<VCreatorBase> myself(this);
    object->setCreator(myself);
    if (hold) keepModuleLoaded(object, hold);
    object->initialize();
    object->enableRequestProcessing();
    const bool isToldByLoader = static_cast<bool>(context.findInterface(typeid(VLoaderInfo)));
    if (!isToldByLoader) VActionNotifier::VObjectCreation(object, context, myself);
}

/// The entry of a creator may tell the path of a former module, whose place it has taken.
/// \return null if the creator is of no module.
RefPtr<VModuleHold> ClassCreator::moduleHold() const
{
    const RefPtr<VModule> module =
        module_ ? RefPtr<VModule>(module_) : VModules::find(getLoadModule());
    return RefPtr<VModuleHold>(module ? new VModuleHold(module) : nullptr);
}

VAcceptInfoList ClassCreator::accept(const RefPtr<VObject>& parent)
{
    VAcceptInfoList ways;
    if (!parent) return ways;
    for (const Tolmen::TypeInfo& type : accepts_)
        ways.splice(ways.end(), parent->getAcceptInfoList(type.get()));
    return ways;
}

} // namespace Quorl
