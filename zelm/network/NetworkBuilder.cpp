#include "NetworkBuilder.h"

#include "ObjectRecord.h"
#include "TypeName.h"
#include "ValueJson.h"

#include <quorl/kit/Network.h>
#include <quorl/modules/VLoaderInfo.h>
#include <quorl/objects/VObject.h>
#include <quorl/registry/VCreationPreferences.h>
#include <quorl/registry/VCreatorBase.h>
#include <quorl/slots/VParameter.h>
#include <quorl/slots/VSlot.h>
#include <quorl/values/VValueBase.h>
#include <quorl/values/ValuePool.h>

#include <functional>
#include <initializer_list>
#include <memory>
#include <string_view>

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

/// "; it has a, b, c", or nothing if it has none.
class Choice
{
public:
    void add(const std::string& name) { names_ += (names_.empty() ? "; it has " : ", ") + name; }
    const std::string& text() const { return names_; }

private:
    std::string names_;
};

std::string inputsOf(const VObject& object)
{
    Choice choice;
    object.iterate_inputs(std::function<bool(VSlot&, int)>([&](const VSlot& slot, int) {
        choice.add(slot.Name);
        return true;
    }));
    return choice.text();
}

class OutputNames final : public Quorl::VOutputIterator
{
public:
    bool apply(const std::type_info& /*type*/, const RefPtr<VSlot>& slot) override
    {
        choice.add(slot->Name);
        return true;
    }

    Choice choice;
};

std::string outputsOf(const VObject& object)
{
    OutputNames names;
    object.iterateOutputs(names, typeid(void));
    return names.choice.text();
}

RefPtr<VSlot> inputOf(const VObject& object, const std::string& input)
{
    int level = 0;
    if (RefPtr<VSlot> slot = object.getSlot(input, level)) return slot;
    throw NetworkError("there is no input " + inQuotes(input) + inputsOf(object));
}

/// The value that an edit of an input in a context means. With a null context, that of all.
RefPtr<VValueBase> valueOf(const VObject& object, const VSlot& slot, const RefPtr<ValuePool>& pool)
{
    if (!isOwnInput(object, slot))
        throw NetworkError("this input is connected, and has no value of its own");
    const VParameter& parameter = *slot.Parameter;
    RefPtr<VValueBase> value = pool && parameter.isLocal() ? parameter.getLocalValue(pool, "", true)
                                                           : parameter.DefaultValue();
    if (!value) throw NetworkError("this input has no value");
    return value;
}

void tell(const VSlot& slot, const RefPtr<VValueBase>& value, const RefPtr<ValuePool>& pool)
{
    const RefPtr<ValuePool> where = slot.Parameter->isLocal() ? pool : RefPtr<ValuePool>();
    slot.Parameter->notifyValueChange(value, where, "", {}, nullptr, nullptr);
}

using Weights = std::vector<std::pair<std::string, double>>;

/// Sets the weights of words, which are 1 when they are entered.
class SetWeights final : public VCreationPreferences::Iterator
{
public:
    explicit SetWeights(const Weights& words)
    {
        for (const auto& [word, weight] : words) weights_[word] = weight;
    }
    bool apply(const std::string& word, double& weight) override
    {
        weight = weights_.at(word);
        return true;
    }

private:
    std::map<std::string_view, double> weights_;
};

RefPtr<VCreationPreferences> preferencesOf(const Weights& words)
{
    RefPtr<VCreationPreferences> preferences(new VCreationPreferences);
    for (const auto& [word, weight] : words) *preferences += word;
    SetWeights setting(words);
    preferences->iterate(setting);
    return preferences;
}

/// Builds one network. What was made leaves the registry again unless the network is finished.
class Builder
{
public:
    Builder(const NetworkDocument& document, const Tolmen::Intercube& info)
        : document_(document), info_(info), network_(new LoadedNetwork)
    {
        network_->frame.file = document.file;
        network_->frame.requests = document.requests;
        network_->frame.saves = document.saves;
        network_->frame.kept = document.kept;
        for (const ContextEntry& context : document.contexts)
        {
            network_->frame.contexts.push_back({});
            network_->frame.contexts.back().name = context.name;
            network_->frame.contexts.back().kept = context.kept;
        }
    }
    Builder(const Builder&) = delete;
    Builder& operator=(const Builder&) = delete;
    ~Builder()
    {
        if (isFinished_) return;
        for (const auto& [name, object] : objects_)
            if (object) object->remove();
    }

    RefPtr<LoadedNetwork> build()
    {
        for (const ObjectEntry& entry : document_.objects) make(entry);
        for (const ObjectEntry& entry : document_.objects) connect(entry);
        for (const ObjectEntry& entry : document_.objects) setValues(entry);
        for (const ContextEntry& entry : document_.contexts) makeContext(entry);
        isFinished_ = true;
        return network_;
    }

private:
    static std::string ownerOf(const ObjectEntry& entry)
    {
        return "object " + inQuotes(entry.name);
    }
    static std::string ownerOf(const ContextEntry& entry)
    {
        return "context " + inQuotes(entry.name);
    }

    [[noreturn]] void refuse(Place place, const std::string& owner, const std::string& key,
                             const std::string& message) const
    {
        throw NetworkError(document_.file, place, owner, key, message);
    }

    /// Says where in the file something was that could not be done. \param key in pieces, which
    /// may be long, and are put together only then.
    template <class Act>
    void located(Place place, const std::string& owner, std::initializer_list<std::string_view> key,
                 Act&& act) const
    {
        try
        {
            act();
        }
        catch (...)
        {
            std::string whole;
            for (const std::string_view piece : key) whole += piece;
            refuse(place, owner, whole, wordsOfException());
        }
    }

    void make(const ObjectEntry& entry)
    {
        RefPtr<VObject>& object = objects_[entry.name]; // held from the first, whatever fails next
        located(entry.place, ownerOf(entry), {"creator"}, [&] { object = created(entry); });
        network_->objects.emplace_back(entry.name, object);
        object->addInterface(network_);
        object->addInterface(recordOf(entry, *object));
    }

    RefPtr<VObject> created(const ObjectEntry& entry) const
    {
        const RefPtr<Quorl::VCreatorBase> creator = Quorl::findCreator(entry.creator);
        if (!creator)
            throw NetworkError("there is no creator " + inQuotes(entry.creator) +
                               (entry.module.empty() ? std::string()
                                                     : "; the module " + inQuotes(entry.module) +
                                                           " had it when this was written"));
        RefPtr<VObject> object = creator->create(entry.name, infoFor(entry));
        if (!object) throw NetworkError(inQuotes(entry.creator) + " made no object");
        return object;
    }

    /// The main object is told to the subscribers of the action channel by whoever loads it.
    Tolmen::Intercube infoFor(const ObjectEntry& entry) const
    {
        Tolmen::Intercube info;
        if (entry.name == mainObjectOf(document_))
            if (const auto origin = info_.findInterface(typeid(Quorl::VLoaderInfo)))
                info.addInterface(origin);
        if (!entry.preferences.empty()) info.addInterface(preferencesOf(entry.preferences));
        return info;
    }

    static RefPtr<ObjectRecord> recordOf(const ObjectEntry& entry, const VObject& object)
    {
        RefPtr<ObjectRecord> record(new ObjectRecord);
        record->kept = entry.kept;
        for (const InputValue& value : entry.values) record->told.insert(value.input);
        for (const Connection& connection : entry.inputs)
            if (!connection.kept.empty())
                record->keptOfInputs.emplace(connection.input, connection.kept);
        object.iterate_inputs(std::function<bool(VSlot&, int)>([&](const VSlot& slot, int) {
            const RefPtr<VValueBase> value =
                slot.Parameter ? slot.Parameter->DefaultValue() : RefPtr<VValueBase>();
            if (value)
                if (const auto json = jsonOf(*value)) record->initial.emplace(slot.Name, *json);
            return true;
        }));
        return record;
    }

    void connect(const ObjectEntry& entry) const
    {
        const RefPtr<VObject>& object = objects_.at(entry.name);
        const std::string owner = ownerOf(entry);
        for (const Connection& connection : entry.inputs)
            located(connection.place, owner, {"inputs.", connection.input},
                    [&] { attach(*object, connection); });
    }

    void attach(VObject& object, const Connection& connection) const
    {
        const RefPtr<VSlot> place = inputOf(object, connection.input);
        const int level = object.getExpertLevel(place);
        const RefPtr<VSlot> source = sourceOf(connection);
        const std::string member = connection.member.empty() ? source->Member : connection.member;
        if (!source->Parameter) throw NetworkError("there is nothing at the source");
        if (place->Parameter) checkFit(object, *place, level, *source, member);
        if (!VSlotContainer::attachParameter(source->Parameter, place, member))
            throw NetworkError("the connection was refused");
        object.initialize(Quorl::WeakPtr<VSlot>(place));
    }

    RefPtr<VSlot> sourceOf(const Connection& connection) const
    {
        const RefPtr<VObject>& object = objects_.at(connection.object);
        RefPtr<VSlot> slot;
        int level = 0;
        if (connection.end != Connection::End::Input) slot = object->getOutput(connection.slot);
        if (!slot && connection.end != Connection::End::Output)
            slot = object->getSlot(connection.slot, level);
        if (slot) return slot;
        const bool isInput = connection.end == Connection::End::Input;
        throw NetworkError(inQuotes(connection.object) + " has no " +
                           (isInput ? "input " : "output ") + inQuotes(connection.slot) +
                           (isInput ? inputsOf(*object) : outputsOf(*object)));
    }

    static void checkFit(VObject& object, const VSlot& place, int level, const VSlot& source,
                         const std::string& member)
    {
        const std::type_info& offered = source.Parameter->getType(member);
        if (place.getType() != offered)
            throw NetworkError("this takes " + typeNameOf(place.getType()) + ", not " +
                               typeNameOf(offered));
        if (place.Parameter->ConnectibilityMismatch(*source.Parameter) != 0 ||
            !object.allowParameterReplacement(source.Parameter, place.Parameter, place.Name, level))
            throw NetworkError("the object does not take this connection");
    }

    void setValues(const ObjectEntry& entry) const
    {
        const RefPtr<VObject>& object = objects_.at(entry.name);
        const std::string owner = ownerOf(entry);
        for (const InputValue& value : entry.values)
            located(value.place, owner, {"values.", value.input},
                    [&] { setInput(*object, value.input, {}, value.datum); });
    }

    void makeContext(const ContextEntry& entry)
    {
        const RefPtr<ValuePool> pool = addContext(*network_, entry.name);
        const std::string owner = ownerOf(entry);
        const auto name = std::make_shared<const std::string>(entry.name);
        for (const ContextValues& values : entry.values) setValuesIn(pool, name, owner, values);
        for (const NamedValue& value : entry.named)
            located(value.place, owner, {"named.", value.name}, [&] {
                const auto made = valueFromJson(value.type, value.datum);
                pool->registerValue(value.name, made);
                network_->named.push_back({value.name, pool, made, value.kept});
            });
    }

    void setValuesIn(const RefPtr<ValuePool>& pool,
                     const std::shared_ptr<const std::string>& context, const std::string& owner,
                     const ContextValues& values) const
    {
        const RefPtr<VObject>& object = objects_.at(values.object);
        const RefPtr<ObjectRecord> record = object->findInterface(typeid(ObjectRecord));
        for (const InputValue& value : values.values)
            located(value.place, owner, {"values.", values.object, ".", value.input}, [&] {
                const RefPtr<VParameter> parameter = inputOf(*object, value.input)->Parameter;
                if (parameter && !parameter->isLocal())
                    throw NetworkError(
                        "this input has one value for all contexts, which belongs to "
                        "the values of its object");
                setInput(*object, value.input, pool, value.datum);
                record->toldIn.emplace(context, value.input);
            });
    }

    const NetworkDocument& document_;
    const Tolmen::Intercube& info_;
    const RefPtr<LoadedNetwork> network_;
    std::map<std::string, RefPtr<VObject>> objects_; // held until the network is finished
    bool isFinished_ = false;
};

} // namespace

RefPtr<LoadedNetwork> buildNetwork(const NetworkDocument& document, const Tolmen::Intercube& info)
{
    return Builder(document, info).build();
}

RefPtr<ValuePool> addContext(LoadedNetwork& network, const std::string& name)
{
    RefPtr<ValuePool> pool = ValuePool::getValuePool(name);
    if (!pool) pool = RefPtr<ValuePool>(new ValuePool(name));
    network.contexts.push_back(pool);
    for (const RefPtr<VObject>& object : network.liveObjects())
        object->iterate_inputs(std::function<bool(VSlot&, int)>([&](const VSlot& slot, int) {
            if (isOwnInput(*object, slot)) slot.getValueBase(pool);
            return true;
        }));
    return pool;
}

const std::string& mainObjectOf(const NetworkDocument& document)
{
    return document.requests.empty() ? document.objects.back().name
                                     : document.requests.front().object;
}

void setInput(const VObject& object, const std::string& input, const RefPtr<ValuePool>& context,
              const Json& json)
{
    const RefPtr<VSlot> slot = inputOf(object, input);
    const RefPtr<VValueBase> value = valueOf(object, *slot, context);
    setFromJson(*value, json);
    tell(*slot, value, context);
}

void setInputText(const VObject& object, const std::string& input, const RefPtr<ValuePool>& context,
                  const std::string& text)
{
    const RefPtr<VSlot> slot = inputOf(object, input);
    const RefPtr<VValueBase> value = valueOf(object, *slot, context);
    setFromText(*value, text);
    tell(*slot, value, context);
}

bool hasInputText(const VObject& object, const std::string& input, const RefPtr<ValuePool>& context,
                  const std::string& text)
{
    const RefPtr<VValueBase> value = valueOf(object, *inputOf(object, input), context);
    const RefPtr<VValueBase> wanted = value->copy();
    if (!wanted) return false;
    setFromText(*wanted, text);
    return jsonOf(*wanted) == jsonOf(*value);
}

bool isOwnInput(const VObject& object, const VSlot& slot)
{
    if (!slot.Parameter || slot.Parameter->source) return false;
    const RefPtr<VSlotContainer> maker = slot.Parameter->creator;
    return !maker || maker.rawptr() == &object || !maker->findSlot(slot.Parameter);
}

} // namespace Zelm
