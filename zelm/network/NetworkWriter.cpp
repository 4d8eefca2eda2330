#include "NetworkWriter.h"

#include "WholeFile.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace Zelm
{
namespace
{

/// One line of JSON, with a blank behind each separator.
void writeInline(std::string& text, const Json& json)
{
    const char* separator = "";
    if (json.is_object())
    {
        text += '{';
        for (const auto& [key, value] : json.items())
        {
            text += separator + Json(key).dump() + ": ";
            writeInline(text, value);
            separator = ", ";
        }
        text += '}';
    }
    else if (json.is_array())
    {
        text += '[';
        for (const Json& element : json)
        {
            text += separator;
            writeInline(text, element);
            separator = ", ";
        }
        text += ']';
    }
    else
        text += json.dump();
}

using Member = std::pair<std::string, Json>;

/// An object of which there may be many members: JSON itself would look through all of them for
/// each new one.
template <class Items, class MemberOf>
Json objectOf(const Items& items, MemberOf&& memberOf)
{
    Json json = Json::object();
    auto& members = json.get_ref<Json::object_t&>();
    std::unordered_map<std::string, std::size_t> places;
    for (const auto& item : items)
    {
        Member member = memberOf(item);
        const auto [place, isNew] = places.try_emplace(member.first, members.size());
        if (isNew)
            members.emplace_back(std::move(member.first), std::move(member.second));
        else
            std::next(members.begin(), static_cast<std::ptrdiff_t>(place->second))->second =
                std::move(member.second);
    }
    return json;
}

/// Members that are there already, which are few, stay in front.
void append(Json& json, const Json& kept)
{
    auto& members = json.get_ref<Json::object_t&>();
    const auto count = static_cast<std::ptrdiff_t>(members.size());
    for (const auto& [key, value] : kept.items())
    {
        const auto end = std::next(members.begin(), count);
        const bool isThere = std::any_of(members.begin(), end,
                                         [&](const auto& known) { return known.first == key; });
        if (!isThere) members.emplace_back(key, value);
    }
}

Json ofValues(const std::vector<InputValue>& values)
{
    return objectOf(values,
                    [](const InputValue& value) { return Member(value.input, value.datum); });
}

Json ofPreferences(const std::vector<std::pair<std::string, double>>& words)
{
    const bool isPlain =
        std::ranges::all_of(words, [](const auto& word) { return word.second == 1.0; });
    if (!isPlain)
        return objectOf(words, [](const auto& word) { return Member(word.first, word.second); });
    Json json = Json::array();
    for (const auto& [word, weight] : words) json.push_back(word);
    return json;
}

bool hasPoint(const std::string& name)
{
    return name.find('.') != std::string::npos;
}

Json ofConnection(const Connection& connection)
{
    const bool isShort = connection.end == Connection::End::Any && connection.member.empty() &&
                         connection.kept.empty() && !hasPoint(connection.object) &&
                         !hasPoint(connection.slot);
    if (isShort) return connection.object + "." + connection.slot;
    Json json = {{"object", connection.object}};
    json[connection.end == Connection::End::Input ? "input" : "output"] = connection.slot;
    if (!connection.member.empty()) json["member"] = connection.member;
    append(json, connection.kept);
    return json;
}

Json ofNamed(const NamedValue& value)
{
    Json json = {{"type", value.type}, {"value", value.datum}};
    append(json, value.kept);
    return json;
}

Json ofObject(const ObjectEntry& object)
{
    Json json = {{"name", object.name}, {"creator", object.creator}};
    if (!object.module.empty()) json["module"] = object.module;
    if (!object.preferences.empty()) json["preferences"] = ofPreferences(object.preferences);
    if (!object.values.empty()) json["values"] = ofValues(object.values);
    if (!object.inputs.empty())
        json["inputs"] = objectOf(object.inputs, [](const Connection& connection) {
            return Member(connection.input, ofConnection(connection));
        });
    append(json, object.kept);
    return json;
}

Json ofRequest(const RequestEntry& request)
{
    if (request.contexts.empty() && request.precision == 1.0 && request.kept.empty())
        return request.object;
    Json json = {{"object", request.object}};
    if (!request.contexts.empty()) json["contexts"] = request.contexts;
    if (request.precision != 1.0) json["precision"] = request.precision;
    append(json, request.kept);
    return json;
}

Json ofSave(const SaveEntry& save)
{
    Json json = {{"object", save.object}, {"file", save.file}};
    append(json, save.kept);
    return json;
}

/// Items between brackets, each on a line of its own.
void writeLines(std::string& text, std::string_view indent, char open, char close,
                std::size_t count, const std::function<void(std::size_t)>& writeItem)
{
    text += open;
    for (std::size_t at = 0; at < count; ++at)
    {
        text += at == 0 ? "\n" : ",\n";
        text += indent;
        text += "  ";
        writeItem(at);
    }
    if (count > 0) (text += '\n') += indent;
    text += close;
}

/// An object a line here, too.
void writeContext(std::string& text, const ContextEntry& context)
{
    Json head = {{"name", context.name}};
    if (!context.named.empty())
        head["named"] = objectOf(context.named, [](const NamedValue& value) {
            return Member(value.name, ofNamed(value));
        });
    append(head, context.kept);
    writeInline(text, head);
    if (context.values.empty()) return;
    text.back() = ','; // of the brace
    text += " \"values\": ";
    writeLines(text, "    ", '{', '}', context.values.size(), [&](std::size_t at) {
        text += Json(context.values[at].object).dump() + ": ";
        writeInline(text, ofValues(context.values[at].values));
    });
    text += '}';
}

template <class Entry, class Write>
void writeList(std::string& text, std::string_view key, const std::vector<Entry>& entries,
               Write&& writeEntry)
{
    if (entries.empty()) return;
    ((text += ",\n  \"") += key) += "\": ";
    writeLines(text, "  ", '[', ']', entries.size(),
               [&](std::size_t at) { writeEntry(text, entries[at]); });
}

template <class Entry>
auto inlineOf(Json (*json)(const Entry&))
{
    return [json](std::string& text, const Entry& entry) { writeInline(text, json(entry)); };
}

std::string writtenDocument(const NetworkDocument& document)
{
    std::string text = "{\n  \"zelm-network\": " + std::to_string(NetworkDocument::kVersion);
    for (const auto& [key, value] : document.kept.items())
    {
        text += ",\n  " + Json(key).dump() + ": ";
        writeInline(text, value);
    }
    writeList(text, "objects", document.objects, inlineOf(ofObject));
    writeList(text, "contexts", document.contexts, writeContext);
    writeList(text, "request", document.requests, inlineOf(ofRequest));
    writeList(text, "save", document.saves, inlineOf(ofSave));
    return text + "\n}\n";
}

} // namespace

std::string writtenNetwork(const NetworkDocument& document)
{
    try
    {
        return writtenDocument(document);
    }
    catch (const Json::type_error&) // the one that writing throws
    {
        throw NetworkError("a text of this network is not UTF-8, and cannot be written as JSON");
    }
}

void writeNetworkFile(const NetworkDocument& document, const std::string& file)
{
    writeWholeFile(file, writtenNetwork(document));
}

} // namespace Zelm
