#pragma once

#include <quorl/Forward.h>
#include <quorl/foundation/TypeInfo.h>
#include <quorl/modules/VLoaderInfo.h>
#include <quorl/modules/VModule.h>
#include <quorl/modules/VModules.h>
#include <quorl/objects/VObject.h>
#include <quorl/registry/VAcceptInfo.h>
#include <quorl/registry/VCreatorBase.h>
#include <quorl/services/VActionNotifier.h>
#include <quorl/slots/VParameter.h>
#include <quorl/slots/VSlot.h>
#include <quorl/tasks/VThreadManager.h>

#include <concepts>
#include <functional>
#include <vector>

namespace Quorl
{

/// What a creator says of itself and of the objects that it makes. Every field may be left out.
struct CreatorTraits
{
    std::vector<Tolmen::TypeInfo> accepts{};  ///< types of outputs that the objects take as inputs
    std::vector<Tolmen::TypeInfo> provides{}; ///< types of their outputs
    string summary{};                         ///< one line for people
    string description{};                     ///< as long as it takes
    string author{};
    string applications{}; ///< separated by semicolons
    int priority = 0;
    RefPtr<VCreationPreferences> preferences{};

    /// Of a creator that is a static object, as those of modules are. One that is made with `new`
    /// is not pinned, or it stays for ever.
    bool isPinned = true;
    const char* text = nullptr; ///< such as the directory of its source; not owned
};

/// What an object needs to be made by a `VCreator`; `using VObject::VObject;` is enough.
template <class Object>
concept Creatable =
    std::derived_from<Object, VObject> &&
    std::constructible_from<Object, const string&, int, const RefPtr<VCreationPreferences>&>;

/// The creator of one class of objects:
///
///     VCreator<Hillshade> hillshade("Grid/Hillshade", {.accepts = {typeid(Field)},
///                                                      .provides = {typeid(Field)}});
///
/// It is found by its key, "category/name(variant)", and as long as it lives by the types that it
/// provides. It takes an object that has an output of an accepted type, once for each.
template <Creatable Object>
class VCreator : public VCreatorBase
{
public:
    explicit VCreator(const string& key, const CreatorTraits& traits = {});
    ~VCreator() override;

    /// Makes an object that is ready for requests, and tells the subscribers of the action channel.
    /// The module that the creator comes from stays loaded for as long as the object lives.
    /// \param name if empty, the identifier.
    RefPtr<VObject> create(const string& name, const Tolmen::Intercube& context) override;

    /// A record for each output of `parent` of each accepted type.
    VAcceptInfoList accept(const RefPtr<VObject>& parent) override;

private:
    static VCreatorProperties propertiesOf(const string& key, const CreatorTraits& traits);
    void keepLoaded(const RefPtr<VObject>& object) const;

    const std::vector<Tolmen::TypeInfo> accepts_;
    const std::vector<Tolmen::TypeInfo> provides_;
};

template <Creatable Object>
VCreator<Object>::VCreator(const string& key, const CreatorTraits& traits)
    : VCreatorBase(propertiesOf(key, traits), traits.priority, traits.preferences, traits.isPinned,
                   traits.text),
      accepts_(traits.accepts), provides_(traits.provides)
{
    for (const Tolmen::TypeInfo& type : provides_)
        registerVInput(type.get(), WeakPtr<VInputCreatorBase>(this));
}

template <Creatable Object>
VCreator<Object>::~VCreator()
{
    for (const Tolmen::TypeInfo& type : provides_)
        unregisterVInput(type.get(), WeakPtr<VInputCreatorBase>(this));
}

template <Creatable Object>
RefPtr<VObject> VCreator<Object>::create(const string& wantedName, const Tolmen::Intercube& context)
{
    constexpr int kObjectPriority = 0;
    const RefPtr<VCreationPreferences> wanted = context.findInterface(typeid(VCreationPreferences));
    const WeakPtr<VCreatorBase> myself(this);
    RefPtr<VObject> object(
        new Object(wantedName.empty() ? element[Name] : wantedName, kObjectPriority, wanted));
    object->setCreator(myself);
    keepLoaded(object);
    object->initialize();
    object->enableRequestProcessing();
    const bool isToldByLoader = static_cast<bool>(context.findInterface(typeid(VLoaderInfo)));
    if (!isToldByLoader) VActionNotifier::VObjectCreation(object, context, myself);
    return object;
}

/// The object, and each of its parameters, which others may show when it has ended, and under which
/// tasks may run.
template <Creatable Object>
void VCreator<Object>::keepLoaded(const RefPtr<VObject>& object) const
{
    const RefPtr<VModule> module = VModules::find(getLoadModule());
    if (!module) return;
    const RefPtr<VModuleHold> hold(new VModuleHold(module));
    object->addInterface(hold);
    const auto keep = [&](const RefPtr<VSlot>& slot) {
        const RefPtr<VParameter>& parameter = slot->Parameter;
        if (!parameter) return;
        const bool hasTasks = parameter->getType() == typeid(VThreadManager);
        if (hasTasks || parameter->creator == object) parameter->addInterface(hold);
    };
    const std::function<bool(const RefPtr<VSlot>&, int)> keepInput = [&](const RefPtr<VSlot>& slot,
                                                                         int) {
        keep(slot);
        return true;
    };
    object->iterate_inputs(keepInput);
    struct KeepOutputs final : VOutputIterator
    {
        explicit KeepOutputs(const decltype(keep)& action) : keepSlot(action) {}
        bool apply(const std::type_info& /*type*/, const RefPtr<VSlot>& slot) override
        {
            keepSlot(slot);
            return true;
        }
        const decltype(keep)& keepSlot;
    } keepOutputs(keep);
    object->iterateOutputs(keepOutputs, typeid(void));
}

template <Creatable Object>
VAcceptInfoList VCreator<Object>::accept(const RefPtr<VObject>& parent)
{
    VAcceptInfoList ways;
    if (!parent) return ways;
    for (const Tolmen::TypeInfo& type : accepts_)
        ways.splice(ways.end(), parent->getAcceptInfoList(type.get()));
    return ways;
}

template <Creatable Object>
VCreatorProperties VCreator<Object>::propertiesOf(const string& key, const CreatorTraits& traits)
{
    VCreatorProperties properties(key, traits.summary, traits.description);
    properties.element[AuthorName] = traits.author;
    properties.element[Applications] = traits.applications;
    return properties;
}

} // namespace Quorl
