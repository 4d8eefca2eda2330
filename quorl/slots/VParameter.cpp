#include <quorl/slots/VParameter.h>

#include <quorl/objects/VObject.h> // an object decides how its parameters are called
#include <quorl/registry/VCreationPreferences.h>
#include <quorl/registry/VManagedObject.h>
#include <quorl/services/VActionNotifier.h>
#include <quorl/services/VUndoAction.h>
#include <quorl/services/VUndoStack.h>
#include <quorl/slots/VParameterConnectionConstraint.h>
#include <quorl/slots/VSlotContainer.h>
#include <quorl/values/VValueBase.h>
#include <quorl/values/ValueActionBase.h>
#include <quorl/values/ValueMap.h>
#include <quorl/values/ValuePool.h>

#include <cstdio>
#include <utility>

namespace Quorl
{

namespace
{

/// Keeps a parameter until all who follow it have been told: one of them may drop it.
RefPtr<ValueNotifierList> kept(const VParameter& parameter)
{
    return Tolmen::heldIfOwned(parameter.self);
}

} // namespace

VParameter::UserIterator::~UserIterator() = default;

VParameter::VParameter() = default;

VParameter::VParameter(const RefPtr<VValueBase>& initialValue, const string& parameterName,
                       const RefPtr<VCreationPreferences>& creationPreferences)
    : preferences(creationPreferences), defaultValue(initialValue), name(parameterName)
{
}

VParameter::~VParameter() = default;

const RefPtr<VValueBase>& VParameter::DefaultValue() const
{
    return defaultValue;
}

string VParameter::Name() const
{
    if (const WeakPtr<VObject> object = creator) return object->CreateParameterName(name);
    if (const WeakPtr<VManagedObject> managed = creator) return managed->getName() + "." + name;
    return name;
}

void VParameter::setCreator(const WeakPtr<VSlotContainer>& newCreator)
{
    creator = newCreator;
}

void VParameter::setCreator(VSlotContainer* newCreator)
{
    creator = WeakPtr<VSlotContainer>(newCreator);
}

void VParameter::setSource(const WeakPtr<VSlotContainer>& newSource)
{
    source = newSource;
}

const std::type_info& VParameter::getType() const
{
    return defaultValue ? defaultValue->getType() : typeid(void);
}

const std::type_info& VParameter::getType(const string& member) const
{
    if (member.empty()) return getType();
    if (!defaultValue) return typeid(void);
    const RefPtr<VValueBase> part = defaultValue->component(member);
    return part ? part->getType() : typeid(void);
}

void VParameter::Localize()
{
    local = true;
}

void VParameter::Globalize(const RefPtr<ValuePool>& pool)
{
    local = false;
    // Deliberate: being global already, this is the default value, and no pool's.
    const RefPtr<VValueBase> value = pool ? getValue(pool, "") : RefPtr<VValueBase>();
    const RefPtr<ValueNotifierList> held = kept(*this); // a variable that ends may drop it, too
    removeAllShadows();
    if (value) setGlobalValue(value, "");
    notify(defaultValue, WeakPtr<ValuePool>(), WeakPtr<ValueNotifier>(), nullptr, properties.get());
}

RefPtr<VValueBase> VParameter::getLocalValue(const RefPtr<ValuePool>& pool, const string& member,
                                             bool create) const
{
    if (!pool) return {};
    RefPtr<VValueBase> variable = pool->findVariable(self);
    if (!variable)
    {
        if (!create) return {};
        variable = createLocalVariable(pool);
    }
    return variable ? variable->component(member) : RefPtr<VValueBase>();
}

RefPtr<VValueBase> VParameter::getValue(const RefPtr<ValuePool>& pool, const string& member) const
{
    if (local)
        if (const RefPtr<VValueBase> value = getLocalValue(pool, member, true)) return value;
    return defaultValue;
}

RefPtr<VValueBase> VParameter::editedValue(const RefPtr<ValuePool>& pool, const string& member,
                                           bool create) const
{
    if (local)
        if (const RefPtr<VValueBase> value = getLocalValue(pool, member, create)) return value;
    return defaultValue;
}

string VParameter::getValueAsText(const RefPtr<ValuePool>& pool, const string& member, bool create)
{
    const RefPtr<VValueBase> value = editedValue(pool, member, create);
    return value ? value->Text() : string();
}

const Ageable& VParameter::age(const RefPtr<ValuePool>& pool) const
{
    if (local)
        if (const RefPtr<VValueBase> value = getLocalValue(pool, "", false)) return value->age();
    if (defaultValue) return defaultValue->age();
    return VValueBase::Undefined();
}

void VParameter::touchValue(const RefPtr<ValuePool>& pool) const
{
    if (local)
        if (const RefPtr<VValueBase> value = getLocalValue(pool, "", false))
            return value->age().touch();
    if (defaultValue) defaultValue->age().touch();
}

/// Touches the value when all have been told, even where one of them throws: it is another one, and
/// who asks next has to see that. They may change the handle of the context, so they get a copy.
template <class Tell>
void VParameter::tellAndTouch(RefPtr<ValuePool> pool, Tell&& tell) const
{
    try
    {
        tell(pool);
    }
    catch (...)
    {
        touchValue(pool);
        throw;
    }
    touchValue(pool);
}

bool VParameter::setValueFromText(const string& text, const RefPtr<ValuePool>& pool,
                                  const string& member, bool create,
                                  const WeakPtr<ValueNotifier>& skip,
                                  const ValueNotifierList* caller, const ValueMap* changes) const
{
    const RefPtr<VValueBase> value = editedValue(pool, member, create);
    if (!value)
    {
        std::puts("Vparam->setValueFromText() getValueBase() NOT ok");
        return false;
    }
    const RefPtr<ValueNotifierList> held = kept(*this); // the former datum may have the last share
    if (!value->setValueFromText(text)) return false;
    if (hasNotifiers())
        tellAndTouch(pool, [&](const RefPtr<ValuePool>& context) {
            notify(value, context, skip, caller, changes);
        });
    else
        touchValue(pool);
    return true;
}

void VParameter::notifyValueChange(const RefPtr<VValueBase>& value, const RefPtr<ValuePool>& pool,
                                   const string& member, const WeakPtr<ValueNotifier>& skip,
                                   const ValueNotifierList* caller, const ValueMap* changes) const
{
    // What nobody hears needs no preparations; they cost more than all the rest.
    if (!hasNotifiers() && !VActionNotifier::hasSubscribers()) return touchValue(pool);
    const RefPtr<ValueNotifierList> held = kept(*this);
    const RefPtr<VValueBase> changed = value;
    tellAndTouch(pool, [&](const RefPtr<ValuePool>& context) {
        notify(changed, context, skip, caller, changes);
        NotifyActionChangeParameter(WeakPtr<ValueNotifierList>(this),
                                    local ? context : RefPtr<ValuePool>(), changed, member);
    });
}

void VParameter::NotifyActionChangeParameter(const WeakPtr<ValueNotifierList>& parameter,
                                             const RefPtr<ValuePool>& pool,
                                             const WeakPtr<VValueBase>& value, const string& member)
{
    VActionNotifier::ChangeParameter(WeakPtr<VParameter>(parameter), pool, value, member);
}

ValueMap& VParameter::ensuredProperties()
{
    if (!properties) properties = std::make_unique<ValueMap>();
    return *properties;
}

void VParameter::notifyOfProperties(const WeakPtr<ValueNotifier>& skip,
                                    const ValueNotifierList* caller,
                                    const WeakPtr<ValuePool>& pool) const
{
    notify(defaultValue, pool, skip, caller, properties.get());
}

void VParameter::sendNotification(const WeakPtr<ValueNotifier>& skip,
                                  const ValueNotifierList* caller, const WeakPtr<ValuePool>& pool)
{
    if (!properties) return;
    const RefPtr<ValueNotifierList> held = kept(*this);
    notifyOfProperties(skip, caller, pool);
}

void VParameter::setProperty(const string& propertyName, const RefPtr<VValueBase>& value,
                             const WeakPtr<ValueNotifier>& skip, const ValueNotifierList* caller,
                             const WeakPtr<ValuePool>& pool)
{
    const RefPtr<ValueNotifierList> held = kept(*this); // the former value may have the last share
    ensuredProperties().setValue(propertyName, value);
    notifyOfProperties(skip, caller, pool);
}

void VParameter::updateProperties(const ValueMap& changed, const WeakPtr<ValueNotifier>& skip,
                                  const ValueNotifierList* caller)
{
    struct Enter final : ValueMap::iterator
    {
        explicit Enter(ValueMap& map) : target(map) {}

        bool apply(const string& propertyName, const RefPtr<VValueBase>& value) override
        {
            target.setValue(propertyName, value);
            return true;
        }

        ValueMap& target;
    };

    const RefPtr<ValueNotifierList> held = kept(*this);
    Enter enter(ensuredProperties());
    std::puts("VParameter::updateProperties()....");
    changed.iterate(enter);
    std::puts("VParameter::updateProperties().... DONE");
    notifyOfProperties(skip, caller, {});
}

void VParameter::AddAction(const RefPtr<ValueActionBase>& action)
{
    actions.push_back(action);
    try
    {
        addNotifier(action);
    }
    catch (...)
    {
        actions.made().pop_back(); // one that is owned has to be told
        throw;
    }
}

void VParameter::AddUndoAction(const RefPtr<VUndoAction>& action, int size)
{
    const RefPtr<VParameter> held = Tolmen::heldIfOwned(WeakPtr<VParameter>(this)); // by an action
    string stackName = Name(); // ahead: an action that was added is not to fail any more
    ValueNotifierList::AddUndoAction(action, size);
    if (const RefPtr<VUndoStack> stack = UndoStack()) stack->name = std::move(stackName);
}

void VParameter::includeUser(const WeakPtr<VManagedObject>& user, const string& text)
{
    users.emplace(user, text);
}

void VParameter::removeUser(const WeakPtr<VManagedObject>& /*user*/, const string& /*text*/) {}

int VParameter::iterateUsers(UserIterator& /*visitor*/) const
{
    return 0;
}

int VParameter::ConnectibilityMismatch(const VParameter& other) const
{
    int refusals = 0;
    const auto asked = constraints; // which may change it
    for (const RefPtr<VParameterConnectionConstraint>& constraint : asked)
        if (constraint && !constraint->accepts(other, *this)) ++refusals;
    return refusals;
}

} // namespace Quorl
