#include "NetworkDescription.h"

#include "LoadedNetwork.h"
#include "NetworkBuilder.h"
#include "ObjectRecord.h"
#include "TypeName.h"
#include "ValueJson.h"

#include <quorl/objects/VObject.h>
#include <quorl/registry/VCreationPreferences.h>
#include <quorl/registry/VCreatorBase.h>
#include <quorl/slots/VParameter.h>
#include <quorl/slots/VSlot.h>
#include <quorl/values/VValueBase.h>
#include <quorl/values/ValuePool.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <optional>

namespace Zelm
{
namespace
{

using Quorl::ValuePool;
using Quorl::VCreationPreferences;
using Quorl::VObject;
using Quorl::VParameter;
using Quorl::VSlot;
using Quorl::VSlotContainer;
using Quorl::VValueBase;

std::vector<RefPtr<VObject>> objectsByAge()
{
    std::vector<RefPtr<VObject>> objects;
    Quorl::VManagedObject::iterate(
        typeid(VObject), [&](int, const RefPtr<Quorl::VManagedObject>& entry, const std::string&) {
            if (const RefPtr<VObject> object = entry) objects.push_back(object);
            return true;
        });
    std::ranges::sort(objects, {}, [](const RefPtr<VObject>& object) { return object->ID; });
    return objects;
}

/// The networks of files that some of the objects belong to.
std::vector<RefPtr<LoadedNetwork>> networksOf(const std::vector<RefPtr<VObject>>& objects)
{
    std::vector<RefPtr<LoadedNetwork>> networks;
    for (const RefPtr<VObject>& object : objects)
        if (const RefPtr<LoadedNetwork> network = LoadedNetwork::of(object);
            network && std::ranges::find(networks, network) == networks.end())
            networks.push_back(network);
    return networks;
}

/// Those of the networks, then the others by name.
std::vector<RefPtr<ValuePool>> poolsOf(const std::vector<RefPtr<LoadedNetwork>>& networks)
{
    struct All final : ValuePool::iterator
    {
        bool apply(const std::string& /*name*/, const WeakPtr<ValuePool>& pool) override
        {
            add(pool);
            return true;
        }
        void add(const RefPtr<ValuePool>& pool)
        {
            if (std::ranges::find(pools, pool) == pools.end()) pools.push_back(pool);
        }

        std::vector<RefPtr<ValuePool>> pools;
    };
    All all;
    for (const RefPtr<LoadedNetwork>& network : networks)
        for (const RefPtr<ValuePool>& pool : network->contexts) all.add(pool);
    ValuePool::iterate(all);
    return all.pools;
}

class Words final : public VCreationPreferences::ConstIterator
{
public:
    bool apply(const std::string& word, double weight) override
    {
        words.emplace_back(word, weight);
        return true;
    }

    std::vector<std::pair<std::string, double>> words;
};

/// A text of one object, with the key that it belongs to.
template <class Tell>
auto located(const VObject& object, const std::string& key, Tell&& tell)
{
    try
    {
        return tell();
    }
    catch (const NetworkError& error)
    {
        throw NetworkError("", {}, "object " + inQuotes(object.getName()), key, error.what());
    }
}

/// Describes one object.
class Description
{
public:
    explicit Description(const RefPtr<VObject>& object)
        : object_(object), record_(object->findInterface(typeid(ObjectRecord)))
    {
    }

    ObjectEntry entry() const
    {
        ObjectEntry entry;
        entry.name = object_->getName();
        describeCreator(entry);
        if (object_->CreationPreferences) describePreferences(entry);
        forEachInput([&](const VSlot& slot) { describeInput(slot, entry); });
        if (record_) entry.kept = record_->kept;
        return entry;
    }

    ContextValues valuesIn(const RefPtr<ValuePool>& pool) const
    {
        ContextValues values;
        values.object = object_->getName();
        forEachInput([&](const VSlot& slot) {
            if (const auto datum = datumIn(slot, pool))
                values.values.push_back({slot.Name, *datum, {}});
        });
        return values;
    }

private:
    template <class Visit>
    void forEachInput(Visit&& visit) const
    {
        object_->iterate_inputs(std::function<bool(VSlot&, int)>([&](const VSlot& slot, int) {
            if (slot.Parameter) visit(slot);
            return true;
        }));
    }

    void describeCreator(ObjectEntry& entry) const
    {
        const RefPtr<Quorl::VCreatorBase> creator = object_->Creator;
        if (!creator)
            throw NetworkError("object " + inQuotes(entry.name) +
                               ": no creator made it, and so no file can tell it");
        entry.creator = creator->getName();
        entry.module = std::filesystem::path(creator->getLoadModule()).filename().string();
    }

    void describePreferences(ObjectEntry& entry) const
    {
        Words visitor;
        const VCreationPreferences& preferences = *object_->CreationPreferences;
        preferences.iterate(visitor);
        entry.preferences = visitor.words;
    }

    void describeInput(const VSlot& slot, ObjectEntry& entry) const
    {
        if (!isOwnInput(*object_, slot))
            entry.inputs.push_back(connectionOf(slot));
        else if (const auto datum = datumOfAll(slot))
            entry.values.push_back({slot.Name, *datum, {}});
    }

    std::optional<Json> datumOfAll(const VSlot& slot) const
    {
        const RefPtr<VValueBase> value = slot.Parameter->DefaultValue();
        if (!value) return std::nullopt;
        std::optional<Json> datum =
            located(*object_, "values." + slot.Name, [&] { return jsonOf(*value); });
        const bool isNews = !record_ || record_->told.contains(slot.Name) ||
                            !record_->initial.contains(slot.Name) ||
                            record_->initial.at(slot.Name) != datum;
        return isNews ? datum : std::nullopt;
    }

    std::optional<Json> datumIn(const VSlot& slot, const RefPtr<ValuePool>& pool) const
    {
        if (!isOwnInput(*object_, slot) || !slot.Parameter->isLocal()) return std::nullopt;
        const RefPtr<VValueBase> value = pool->findVariable(slot.Parameter);
        if (!value) return std::nullopt;
        return located(*object_, slot.Name, [&]() -> std::optional<Json> {
            std::optional<Json> datum = jsonOf(*value);
            const bool isNews =
                (record_ && record_->toldIn.contains(ObjectRecord::Words(pool->name, slot.Name))) ||
                jsonOf(*slot.Parameter->DefaultValue()) != datum;
            return isNews ? datum : std::nullopt;
        });
    }

    Connection connectionOf(const VSlot& slot) const
    {
        const RefPtr<VParameter>& parameter = slot.Parameter;
        const bool isOutput = static_cast<bool>(parameter->source);
        const RefPtr<VSlotContainer> provider = isOutput ? parameter->source : parameter->creator;
        const RefPtr<VSlot> end =
            isOutput ? provider->findOutputSlot(parameter) : provider->findSlot(parameter);
        const RefPtr<VObject> source = provider;
        if (!source || !end)
            throw NetworkError("", {}, "object " + inQuotes(object_->getName()),
                               "inputs." + slot.Name, "no file can tell where this comes from");
        Connection connection;
        connection.input = slot.Name;
        connection.object = source->getName();
        connection.slot = end->Name;
        if (slot.Member != end->Member) connection.member = slot.Member;
        if (record_ && record_->keptOfInputs.contains(slot.Name))
            connection.kept = record_->keptOfInputs.at(slot.Name);
        const bool isClear = isOutput || !source->getOutput(end->Name);
        const bool needsEnd = !isClear || !connection.member.empty() || !connection.kept.empty();
        if (needsEnd) connection.end = isOutput ? Connection::End::Output : Connection::End::Input;
        return connection;
    }

    const RefPtr<VObject> object_;
    const RefPtr<ObjectRecord> record_;
};

/// A name of a file as the registry has it now.
std::string presentName(const LoadedNetwork& network, const std::string& name)
{
    const RefPtr<VObject> object = network.object(name);
    return object ? object->getName() : std::string();
}

void describeFrame(const LoadedNetwork& network, NetworkDocument& document)
{
    for (RequestEntry request : network.frame.requests)
    {
        request.object = presentName(network, request.object);
        if (!request.object.empty()) document.requests.push_back(request);
    }
    for (SaveEntry save : network.frame.saves)
    {
        save.object = presentName(network, save.object);
        if (!save.object.empty()) document.saves.push_back(save);
    }
    for (const auto& [key, value] : network.frame.kept.items())
        if (!document.kept.contains(key)) document.kept[key] = value;
}

ContextEntry describeContext(const RefPtr<ValuePool>& pool,
                             const std::vector<RefPtr<VObject>>& objects,
                             const std::vector<RefPtr<LoadedNetwork>>& networks)
{
    ContextEntry entry;
    entry.name = pool->name;
    for (const RefPtr<VObject>& object : objects)
        if (ContextValues values = Description(object).valuesIn(pool); !values.values.empty())
            entry.values.push_back(std::move(values));
    for (const RefPtr<LoadedNetwork>& network : networks)
    {
        for (const LoadedNetwork::Named& named : network->named)
            if (named.pool == pool)
                if (const auto datum = jsonOf(*named.value))
                    entry.named.push_back(
                        {named.name, typeNameOf(named.value->getType()), *datum, named.kept, {}});
        for (const ContextEntry& frame : network->frame.contexts)
            if (frame.name == pool->name && entry.kept.empty()) entry.kept = frame.kept;
    }
    return entry;
}

} // namespace

NetworkDocument describeNetwork()
{
    const std::vector<RefPtr<VObject>> objects = objectsByAge();
    const std::vector<RefPtr<LoadedNetwork>> networks = networksOf(objects);
    NetworkDocument document;
    for (const RefPtr<VObject>& object : objects)
        document.objects.push_back(Description(object).entry());
    for (const RefPtr<ValuePool>& pool : poolsOf(networks))
        document.contexts.push_back(describeContext(pool, objects, networks));
    for (const RefPtr<LoadedNetwork>& network : networks) describeFrame(*network, document);
    return document;
}

} // namespace Zelm
