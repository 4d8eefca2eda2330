#include "Providers.h"

#include "Preferences.h"

#include <quorl/foundation/TypeInfo.h>
#include <quorl/foundation/Typename.h>
#include <quorl/objects/VObject.h>
#include <quorl/registry/VCreatorBase.h>
#include <quorl/registry/VInputCreator.h>
#include <quorl/slots/VSlot.h>
#include <zelm/network/TypeName.h>

#include <functional>
#include <map>

namespace Zelm
{
namespace
{

using Quorl::RefPtr;
using Quorl::VCreatorBase;
using Quorl::VObject;
using Quorl::VSlot;
using Quorl::WeakPtr;

using Types = std::map<std::string, Tolmen::TypeInfo>; // by the names of the kernel

struct OutputTypes final : Quorl::VOutputIterator
{
    explicit OutputTypes(Types& all) : types(all) {}
    bool apply(const std::type_info& type, const RefPtr<VSlot>& /*slot*/) override
    {
        types.emplace(Tolmen::Typename(type), type);
        return true;
    }

    Types& types;
};

void addTypesOf(VCreatorBase& creator, Types& types)
{
    const RefPtr<VObject> object = creator.create("", Tolmen::Intercube());
    if (!object) return;
    object->iterate_inputs(std::function<bool(VSlot&, int)>([&](const VSlot& slot, int) {
        types.emplace(Tolmen::Typename(slot.getType()), slot.getType());
        return true;
    }));
    OutputTypes outputs(types);
    object->iterateOutputs(outputs, typeid(void));
    object->remove();
}

/// The types of all slots that objects of all creators have.
Types knownTypes()
{
    Types types;
    Quorl::VManagedObject::iterate(
        typeid(Quorl::VInputCreatorBase),
        [&](int, const RefPtr<Quorl::VManagedObject>& entry, const std::string&) {
            if (const RefPtr<VCreatorBase> creator = entry) addTypesOf(*creator, types);
            return true;
        });
    return types;
}

struct Scores final : Quorl::VInputCreatorIterator
{
    explicit Scores(const WeakPtr<Quorl::VInputCreatorBase>& best) : winner(best) {}

    /// Nothing is preferred here, so that each scores 1.
    bool apply(const WeakPtr<Quorl::VInputCreatorBase>& creator) override
    {
        Json entry{{"creator", creator->getName()}, {"score", 1.0}, {"wins", creator == winner}};
        const Json preferences = preferencesAsJson(creator->preferences);
        if (!preferences.is_null()) entry["preferences"] = preferences;
        list.push_back(entry);
        return true;
    }

    const WeakPtr<Quorl::VInputCreatorBase> winner;
    Json list = Json::array();
};

} // namespace

std::optional<Json> providersOf(const std::string& type)
{
    const Types types = knownTypes();
    const auto known = types.find(kernelTypeName(type));
    if (known == types.end()) return std::nullopt;
    const std::type_info& info = known->second.get();
    Scores scores(Quorl::findBestVInputCreator(info, {}));
    Quorl::iterateVInputCreators(info, scores);
    return Json{{"type", typeNameOf(info)},
                {"providers", scores.list},
                {"reason", scores.list.size() > 1 ? "of equal scores the first registered"
                                                  : "there is no other"}};
}

} // namespace Zelm
