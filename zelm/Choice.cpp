#include "Choice.h"

#include "Failure.h"

#include <quorl/objects/VObject.h>
#include <quorl/values/ValuePool.h>
#include <zelm/network/NetworkBuilder.h>

namespace Zelm
{

using Quorl::ValuePool;
using Quorl::VObject;

namespace
{

constexpr const char* kSetForm = "object.slot=text";

/// "object.slot=text" for one network.
struct Setting
{
    Setting(const LoadedNetwork& network, const std::string& set) : words(set)
    {
        const auto [target, value] = halvesOf("--set", set, kSetForm);
        const auto point = target.rfind('.');
        if (point == std::string::npos)
            throw UsageError("--set " + set + ": " + kSetForm + " is expected");
        object = objectOf(network, "--set", target.substr(0, point));
        input = target.substr(point + 1);
        text = value;
    }

    bool holdsIn(const RefPtr<ValuePool>& context) const
    {
        return hasInputText(*object, input, context, text);
    }

    void applyTo(const RefPtr<ValuePool>& context) const
    {
        try
        {
            setInputText(*object, input, context, text);
        }
        catch (const NetworkError& error)
        {
            throw UsageError("--set " + words + ": " + error.what());
        }
        catch (...) // an observer of the module
        {
            throw NetworkError("--set " + words + ": " + wordsOfException());
        }
    }

    const std::string& words;
    RefPtr<VObject> object;
    std::string input;
    std::string text;
};

} // namespace

void Choice::addTo(CLI::App& command)
{
    addRepeated(command, "--set", sets, "OBJECT.SLOT=TEXT",
                "give an input a value in the contexts that are run; may be repeated");
    addRepeated(command, "--context", contexts, "NAME", "only this context; may be repeated");
    addRepeated(command, "--request", requests, "OBJECT",
                "bring this object up to date, in place of those that the file names");
}

std::vector<RefPtr<ValuePool>> Choice::contextsOf(const LoadedNetwork& network) const
{
    if (contexts.empty()) return network.contexts;
    std::vector<RefPtr<ValuePool>> chosen;
    for (const std::string& name : contexts)
    {
        const RefPtr<ValuePool> context = network.context(name);
        if (!context) throw UsageError("--context " + name + ": the network has no such context");
        chosen.push_back(context);
    }
    return chosen;
}

std::vector<RequestEntry> Choice::requestsOf(const HostNetwork& network) const
{
    std::vector<RequestEntry> entries;
    for (const std::string& object : requests)
    {
        objectOf(*network, "--request", object);
        entries.emplace_back();
        entries.back().object = object;
    }
    return entries.empty() ? network.requests() : entries;
}

void Choice::setInputs(const LoadedNetwork& network,
                       const std::vector<RefPtr<ValuePool>>& pools) const
{
    for (const std::string& set : sets)
    {
        const Setting setting(network, set);
        for (const RefPtr<ValuePool>& context : pools) setting.applyTo(context);
    }
}

void Choice::restoreInputs(const LoadedNetwork& network,
                           const std::vector<RefPtr<ValuePool>>& pools) const
{
    for (const std::string& set : sets)
    {
        const Setting setting(network, set);
        for (const RefPtr<ValuePool>& context : pools)
            if (!setting.holdsIn(context)) setting.applyTo(context);
    }
}

void addRepeated(CLI::App& command, const char* option, std::vector<std::string>& words,
                 const char* form, const char* help)
{
    command.add_option(option, words, help)
        ->type_name(form)
        ->expected(1)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
}

std::pair<std::string, std::string> halvesOf(const std::string& option, const std::string& text,
                                             const std::string& form)
{
    const auto sign = text.find('=');
    if (sign == std::string::npos || sign == 0)
        throw UsageError(option + " " + text + ": " + form + " is expected");
    return {text.substr(0, sign), text.substr(sign + 1)};
}

RefPtr<VObject> objectOf(const LoadedNetwork& network, const std::string& option,
                         const std::string& name)
{
    if (RefPtr<VObject> object = network.object(name)) return object;
    throw UsageError(option + " " + name + ": the network has no such object");
}

} // namespace Zelm
