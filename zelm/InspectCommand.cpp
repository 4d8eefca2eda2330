#include "CacheFile.h"
#include "Commands.h"
#include "Failure.h"
#include "Modules.h"
#include "Output.h"
#include "Preferences.h"
#include "Providers.h"
#include "Table.h"

#include <quorl/kit/Network.h>
#include <quorl/objects/VObject.h>
#include <quorl/registry/VCreatorBase.h>
#include <quorl/registry/VCreatorBaseInfo.h>
#include <quorl/registry/VCreatorMapTypes.h>
#include <quorl/slots/VParameter.h>
#include <quorl/slots/VSlot.h>
#include <quorl/values/VValueBase.h>
#include <zelm/network/TypeName.h>
#include <zelm/network/ValueJson.h>

#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace Zelm
{
namespace
{

using Quorl::RefPtr;
using Quorl::VCreatorBase;
using Quorl::VObject;
using Quorl::VSlot;

std::string fileNameOf(const std::string& path)
{
    return std::filesystem::path(path).filename().string();
}

Json modulesAsJson(const Modules& modules)
{
    Json list = Json::array();
    for (const ModuleState& module : modules.states())
    {
        Json entry{{"path", module.path}, {"state", module.state}};
        if (!module.reason.empty()) entry["reason"] = module.reason;
        if (!module.source.empty()) entry["source"] = module.source;
        list.push_back(entry);
    }
    return list;
}

/// The creators of the registry, those that wait for their modules included.
Json creatorsAsJson()
{
    Json list = Json::array();
    for (const auto& [key, info] : *Quorl::VCreators(typeid(Quorl::VInputCreatorBase)))
    {
        if (!info) continue;
        Json entry{{"creator", key}, {"module", fileNameOf(info->ModuleName)}};
        entry["state"] = info->getCreator() ? "loaded" : "cached";
        const RefPtr<VCreatorBase> creator = info->getCreator();
        if (creator) entry["summary"] = creator->element[VCreatorBase::Summary];
        list.push_back(entry);
    }
    return list;
}

std::string categoryOf(const std::string& key)
{
    const auto slash = key.rfind('/');
    return slash == std::string::npos ? "" : key.substr(0, slash);
}

void printOverview(const Json& overview)
{
    Output::printLine("Modules");
    for (const Json& module : overview["modules"])
        Output::printLine("  " + Output::padded(module["state"], 9) +
                          module["path"].get<std::string>() +
                          (module.contains("reason") ? ": " + module["reason"].get<std::string>()
                                                     : std::string()));
    std::map<std::string, std::vector<Json>> categories;
    for (const Json& creator : overview["creators"])
        categories[categoryOf(creator["creator"])].push_back(creator);
    for (const auto& [category, creators] : categories)
    {
        Output::printLine("\n" +
                          (category.empty() ? std::string("Creators of no category") : category));
        Table table({Table::Left, Table::Left});
        for (const Json& creator : creators)
            table.add({creator["creator"], creator["state"] == "cached"
                                               ? "(in the cache)"
                                               : creator.value("summary", "")});
        Output::print(table.text());
    }
}

/// A value as a network file tells it; the text alone of what is no number, truth or text.
Json shortJsonOf(const Quorl::VValueBase& value)
{
    const std::optional<Json> json = jsonOf(value);
    return json && json->is_primitive() ? *json : Json(value.Text());
}

/// A slot as it is when its object has just been made.
Json slotAsJson(const VSlot& slot)
{
    Json entry{{"slot", slot.Name}, {"type", typeNameOf(slot.getType())}};
    if (!slot.Parameter) return entry;
    const auto value = slot.Parameter->DefaultValue();
    entry["initial"] = value ? shortJsonOf(*value) : Json();
    entry["per context"] = slot.Parameter->isLocal();
    const Json preferences = preferencesAsJson(slot.Parameter->preferences);
    if (!preferences.is_null()) entry["preferences"] = preferences;
    return entry;
}

struct Outputs final : Quorl::VOutputIterator
{
    bool apply(const std::type_info& /*type*/, const RefPtr<VSlot>& slot) override
    {
        list.push_back({{"slot", slot->Name}, {"type", typeNameOf(slot->getType())}});
        return true;
    }

    Json list = Json::array();
};

/// The slots that an object of a creator has; one is made for it, and removed.
void addSlots(VCreatorBase& creator, Json& facts)
{
    const RefPtr<VObject> object = creator.create("", Tolmen::Intercube());
    if (!object) return;
    facts["inputs"] = Json::array();
    object->iterate_inputs(std::function<bool(VSlot&, int)>([&](const VSlot& slot, int level) {
        facts["inputs"].push_back(slotAsJson(slot));
        facts["inputs"].back()["expert level"] = level;
        return true;
    }));
    Outputs outputs;
    object->iterateOutputs(outputs, typeid(void));
    facts["outputs"] = outputs.list;
    object->remove();
}

Json factsOf(VCreatorBase& creator)
{
    const auto& texts = creator.element;
    Json facts{{"creator", creator.getName()},
               {"module", fileNameOf(creator.getLoadModule())},
               {"identifier", texts[VCreatorBase::Name]},
               {"category", texts[VCreatorBase::Category]},
               {"priority", creator.VManagedObject::priority}};
    const auto addText = [&](const char* key, std::size_t element) {
        if (!texts[element].empty()) facts[key] = texts[element];
    };
    addText("variant", VCreatorBase::Variant);
    addText("summary", VCreatorBase::Summary);
    addText("description", VCreatorBase::Description);
    addText("author", VCreatorBase::AuthorName);
    addText("applications", VCreatorBase::Applications);
    const Json preferences = preferencesAsJson(creator.preferences);
    if (!preferences.is_null()) facts["preferences"] = preferences;
    addSlots(creator, facts);
    return facts;
}

/// Nothing for what is not there.
std::string bareText(const Json& json)
{
    if (json.is_null()) return "";
    return json.is_string() ? json.get<std::string>() : json.dump();
}

/// What is not usual with a slot, in brackets.
std::string remarksOn(const Json& slot)
{
    std::string remarks;
    const auto add = [&](const std::string& remark) {
        remarks += (remarks.empty() ? "" : ", ") + remark;
    };
    if (slot.value("per context", false)) add("in each context");
    if (slot.value("expert level", 0) != 0) add("expert level " + slot["expert level"].dump());
    Json others = slot.value("preferences", Json::object());
    others.erase("local"); // makes it so in each context
    if (!others.empty()) add("prefers " + wordsOf(others));
    return remarks.empty() ? "" : "(" + remarks + ")";
}

void printSlots(const char* title, const Json& slots)
{
    if (slots.empty()) return;
    Table table({Table::Left, Table::Left, Table::Left, Table::Left});
    for (const Json& slot : slots)
        table.add(
            {slot["slot"], slot["type"], bareText(slot.value("initial", Json())), remarksOn(slot)});
    Output::print(std::string("\n") + title + "\n" + table.text());
}

void printCreator(const Json& facts)
{
    for (const auto& [key, value] : facts.items())
        if (!value.is_array())
            Output::printLine(Output::padded(key, 14) +
                              (value.is_object() ? wordsOf(value) : bareText(value)));
    printSlots("Inputs", facts.value("inputs", Json::array()));
    printSlots("Outputs", facts.value("outputs", Json::array()));
}

void printProviders(const Json& facts)
{
    Output::printLine(facts["type"].get<std::string>() + " is provided by");
    Table table({Table::Left, Table::Left, Table::Left, Table::Left});
    for (const Json& provider : facts["providers"])
        table.add({provider["creator"], "score " + provider["score"].dump(),
                   provider["wins"] ? "wins: " + facts["reason"].get<std::string>() : "",
                   provider.contains("preferences")
                       ? "(offers " + wordsOf(provider["preferences"]) + ")"
                       : ""});
    Output::print(table.text());
    if (facts["providers"].empty()) Output::printLine("  nobody");
}

void print(const Settings& settings, const Json& facts, void (*forPeople)(const Json&))
{
    if (settings.asJson)
        Output::printJson(facts);
    else
        forPeople(facts);
}

void inspect(const std::string& name, const Settings& settings)
{
    Modules modules(settings);
    CacheFile(settings).use(modules);
    modules.open();
    if (name.empty())
        return print(settings,
                     {{"folders", modules.folders()},
                      {"modules", modulesAsJson(modules)},
                      {"creators", creatorsAsJson()}},
                     &printOverview);
    modules.complain();
    if (const RefPtr<VCreatorBase> creator = Quorl::findCreator(name))
        return print(settings, factsOf(*creator), &printCreator);
    modules.openAll(); // types are known by the objects alone
    if (const auto providers = providersOf(name))
        return print(settings, *providers, &printProviders);
    throw UsageError("inspect " + name + ": there is no such creator, and no such type");
}

} // namespace

void addInspectCommand(CLI::App& program, const Settings& settings)
{
    CLI::App* const command = program.add_subcommand(
        "inspect", "Tells of the modules and creators, or of one creator, or who provides a type.");
    const auto name = std::make_shared<std::string>();
    command->fallthrough();
    command->add_option("NAME", *name, "a creator, as Grid/Hillshade, or a type, as Maps::Field");
    command->footer("\nExamples:\n  zelm inspect\n  zelm inspect Grid/Hillshade --json\n"
                    "  zelm inspect Maps::Field");
    command->callback([name, &settings] { inspect(*name, settings); });
}

} // namespace Zelm
