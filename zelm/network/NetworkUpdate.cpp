#include "NetworkUpdate.h"

#include "NetworkBuilder.h"
#include "NetworkWriter.h"
#include "ObjectRecord.h"

#include <quorl/objects/VObject.h>
#include <quorl/slots/VParameter.h>
#include <quorl/values/ValuePool.h>

#include <algorithm>
#include <map>
#include <set>

namespace Zelm
{
namespace
{

using Quorl::ValuePool;
using Quorl::VObject;

/// The document without its values.
std::string structureOf(NetworkDocument document)
{
    for (ObjectEntry& object : document.objects) object.values.clear();
    for (ContextEntry& context : document.contexts) context.values.clear();
    document.requests.clear();
    document.saves.clear();
    document.kept = Json::object();
    return writtenNetwork(document);
}

/// The values of a document, by whom they concern.
class Values
{
public:
    explicit Values(const NetworkDocument& document)
    {
        for (const ObjectEntry& object : document.objects)
            for (const InputValue& value : object.values) all_[object.name][value.input] = &value;
        for (const ContextEntry& context : document.contexts)
            for (const ContextValues& values : context.values)
                for (const InputValue& value : values.values)
                    contexts_[context.name][values.object][value.input] = &value;
    }

    /// What the file tells of an input for all contexts; null if nothing.
    const InputValue* ofAll(const std::string& object, const std::string& input) const
    {
        return found(all_, object, input);
    }

    /// What it tells for a context; what it tells for all if nothing.
    const InputValue* in(const std::string& context, const std::string& object,
                         const std::string& input) const
    {
        const auto values = contexts_.find(context);
        const InputValue* const own =
            values == contexts_.end() ? nullptr : found(values->second, object, input);
        return own ? own : ofAll(object, input);
    }

    /// Adds the inputs of an object that something is told of.
    void addInputs(const std::string& object, std::set<std::string>& inputs) const
    {
        const auto add = [&](const Objects& objects) {
            if (const auto entry = objects.find(object); entry != objects.end())
                for (const auto& [input, value] : entry->second) inputs.insert(input);
        };
        add(all_);
        for (const auto& [context, objects] : contexts_) add(objects);
    }

private:
    using Inputs = std::map<std::string, const InputValue*>;
    using Objects = std::map<std::string, Inputs>;

    static const InputValue* found(const Objects& objects, const std::string& object,
                                   const std::string& input)
    {
        const auto entry = objects.find(object);
        if (entry == objects.end()) return nullptr;
        const auto value = entry->second.find(input);
        return value == entry->second.end() ? nullptr : value->second;
    }

    Objects all_;
    std::map<std::string, Objects> contexts_;
};

/// Sets what differs between two documents of one structure.
class Update
{
public:
    Update(LoadedNetwork& network, const NetworkDocument& before, const NetworkDocument& after)
        : network_(network), file_(after.file), before_(before), after_(after)
    {
    }

    void run(const std::string& name, const VObject& object) const
    {
        std::set<std::string> inputs;
        before_.addInputs(name, inputs);
        after_.addInputs(name, inputs);
        for (const std::string& input : inputs) setInput(name, object, input);
    }

private:
    void setInput(const std::string& name, const VObject& object, const std::string& input) const
    {
        set(name, object, input, {}, before_.ofAll(name, input), after_.ofAll(name, input));
        const RefPtr<Quorl::VParameter> parameter = object.getParameter(input);
        if (!parameter || !parameter->isLocal()) return;
        for (const RefPtr<ValuePool>& pool : network_.contexts)
            set(name, object, input, pool, before_.in(pool->name, name, input),
                after_.in(pool->name, name, input));
    }

    void set(const std::string& name, const VObject& object, const std::string& input,
             const RefPtr<ValuePool>& pool, const InputValue* before, const InputValue* after) const
    {
        const bool isEqual = before && after ? before->datum == after->datum : before == after;
        if (isEqual) return;
        const RefPtr<ObjectRecord> record = object.findInterface(typeid(ObjectRecord));
        const auto initial = record->initial.find(input);
        if (!after && initial == record->initial.end()) return;
        try
        {
            Zelm::setInput(object, input, pool, after ? after->datum : initial->second);
        }
        catch (...)
        {
            throw NetworkError(file_, after ? after->place : Place(), "object " + inQuotes(name),
                               "values." + input, wordsOfException());
        }
    }

    LoadedNetwork& network_;
    const std::string file_;
    const Values before_;
    const Values after_;
};

} // namespace

bool updateNetwork(LoadedNetwork& network, const NetworkDocument& before,
                   const NetworkDocument& after)
{
    if (structureOf(before) != structureOf(after)) return false;
    const Update update(network, before, after);
    for (const auto& [name, object] : network.objects) // those of both documents
        if (const RefPtr<VObject> live = object) update.run(name, *live);
    network.frame.requests = after.requests;
    network.frame.saves = after.saves;
    network.frame.kept = after.kept;
    return true;
}

} // namespace Zelm
