#include "NetworkReader.h"

#include "JsonTree.h"

#include <algorithm>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string_view>

namespace Zelm
{
namespace
{

/// The keys that lead to a value. They are put together only where people are told of them: they
/// may be long, and there may be many values behind one of them.
struct Way
{
    std::shared_ptr<const Way> before; // null at the first key
    std::string_view key;              // of the tree

    std::string told() const { return (before ? before->told() + "." : "") + std::string(key); }
};

/// A value of the file, and how people are told of it. Parts of one owner share its words.
struct Part
{
    const JsonTree* tree;
    const JsonNode* node;
    std::shared_ptr<const std::string> owner; // such as `object "region"`; null if there is none
    std::shared_ptr<const Way> way;           // from the owner; null at the owner itself

    [[noreturn]] void refuse(const std::string& message) const
    {
        throw NetworkError(tree->file(), place(), owner ? *owner : "", way ? way->told() : "",
                           message);
    }
    [[noreturn]] void expected(const std::string& what) const
    {
        refuse(what + " is expected here, not " + node->kindForPeople());
    }

    Place place() const { return tree->placeOf(node->offset); }
    Part at(const JsonMember& member) const
    {
        return {tree, &member.value, owner, std::make_shared<const Way>(Way{way, member.key})};
    }

    const std::vector<JsonMember>& members() const
    {
        if (node->kind != JsonNode::Kind::Object) expected("an object");
        return node->members;
    }
    std::vector<Part> elements() const
    {
        if (node->kind != JsonNode::Kind::Array) expected("a list");
        std::vector<Part> parts;
        parts.reserve(node->elements.size());
        for (const JsonNode& element : node->elements)
            parts.push_back({tree, &element, owner, way});
        return parts;
    }

    bool isText() const { return node->scalar.is_string(); }
    std::string text() const
    {
        if (!isText()) expected("a text");
        return node->scalar.get<std::string>();
    }
    std::string name() const
    {
        std::string words = text();
        if (words.empty()) refuse("this must not be empty");
        return words;
    }
    double number() const
    {
        if (!node->scalar.is_number()) expected("a number");
        return node->scalar.get<double>();
    }
};

/// The members of an object, to be taken by their keys. Those that nobody has taken are kept.
class Members
{
public:
    explicit Members(const Part& whole) : whole_(whole), taken_(whole.members().size(), false) {}

    std::optional<Part> take(std::string_view key)
    {
        const auto& members = whole_.members();
        const auto found = std::ranges::find(members, key, &JsonMember::key);
        if (found == members.end()) return std::nullopt;
        taken_[static_cast<std::size_t>(found - members.begin())] = true;
        return whole_.at(*found);
    }

    Part need(std::string_view key)
    {
        if (std::optional<Part> part = take(key)) return *part;
        whole_.refuse("the key " + inQuotes(std::string(key)) + " is missing");
    }

    std::string textOr(std::string_view key, const std::string& otherwise)
    {
        const std::optional<Part> part = take(key);
        return part ? part->text() : otherwise;
    }

    /// Names what is read, from now on; keys are told from there.
    void own(const std::string& owner)
    {
        whole_.owner = std::make_shared<const std::string>(owner);
        whole_.way.reset();
    }

    Json rest() const
    {
        Json kept = Json::object();
        for (std::size_t at = 0; at < taken_.size(); ++at)
            if (!taken_[at])
                kept.get_ref<Json::object_t&>().emplace_back(whole_.members()[at].key,
                                                             whole_.members()[at].value.plain());
        return kept;
    }

private:
    Part whole_;
    std::vector<bool> taken_;
};

/// What an input can be: a scalar, or the text of a value of a type.
Json readDatum(const Part& part)
{
    const JsonNode& node = *part.node;
    if (node.kind == JsonNode::Kind::Array ||
        (node.kind == JsonNode::Kind::Scalar && node.scalar.is_null()))
        part.expected("a number, a truth value, a text, or an object of type and text");
    if (node.kind == JsonNode::Kind::Scalar) return node.scalar;
    Members members(part);
    Json datum{{"type", members.need("type").name()}, {"text", members.need("text").text()}};
    if (!members.rest().empty())
        part.refuse("the key " + inQuotes(members.rest().begin().key()) + " does not belong here");
    return datum;
}

std::vector<InputValue> readValues(const Part& part)
{
    std::vector<InputValue> values;
    for (const JsonMember& member : part.members())
    {
        const Part value = part.at(member);
        values.push_back({member.key, readDatum(value), value.place()});
    }
    return values;
}

std::vector<std::pair<std::string, double>> readPreferences(const Part& part)
{
    std::vector<std::pair<std::string, double>> words;
    if (part.node->kind == JsonNode::Kind::Object)
        for (const JsonMember& member : part.members())
            words.emplace_back(member.key, part.at(member).number());
    else
        for (const Part& word : part.elements()) words.emplace_back(word.text(), 1.0);
    return words;
}

/// "object.slot", for names of which neither has a point in it.
void readShortConnection(const Part& part, Connection& connection)
{
    const std::string words = part.name();
    const auto point = words.find('.');
    const bool isClear = point != std::string::npos && point == words.rfind('.') && point != 0 &&
                         point + 1 != words.size();
    if (!isClear)
        part.refuse("\"object.slot\" is expected here; names with points in them are told as "
                    R"({"object": ..., "output": ...})");
    connection.object = words.substr(0, point);
    connection.slot = words.substr(point + 1);
}

void readLongConnection(const Part& part, Connection& connection)
{
    Members members(part);
    connection.object = members.need("object").name();
    connection.member = members.textOr("member", "");
    const std::optional<Part> output = members.take("output");
    const std::optional<Part> input = members.take("input");
    if (output.has_value() == input.has_value())
        part.refuse(R"(either the key "output" or the key "input" is expected here)");
    connection.end = output ? Connection::End::Output : Connection::End::Input;
    connection.slot = output ? output->name() : input->name();
    connection.kept = members.rest();
}

std::vector<Connection> readConnections(const Part& part)
{
    std::vector<Connection> connections;
    for (const JsonMember& member : part.members())
    {
        const Part value = part.at(member);
        Connection connection;
        connection.input = member.key;
        connection.place = value.place();
        if (value.isText())
            readShortConnection(value, connection);
        else
            readLongConnection(value, connection);
        connections.push_back(std::move(connection));
    }
    return connections;
}

ObjectEntry readObject(const Part& part)
{
    ObjectEntry entry;
    Members members(part);
    entry.place = part.place();
    entry.name = members.need("name").name();
    members.own("object " + inQuotes(entry.name));
    entry.creator = members.need("creator").name();
    entry.module = members.textOr("module", "");
    if (const auto words = members.take("preferences")) entry.preferences = readPreferences(*words);
    if (const auto values = members.take("values")) entry.values = readValues(*values);
    if (const auto inputs = members.take("inputs")) entry.inputs = readConnections(*inputs);
    entry.kept = members.rest();
    return entry;
}

std::vector<NamedValue> readNamedValues(const Part& part)
{
    std::vector<NamedValue> named;
    for (const JsonMember& member : part.members())
    {
        const Part value = part.at(member);
        Members members(value);
        const std::string type = members.need("type").name();
        const Json datum = readDatum(members.need("value"));
        named.push_back({member.key, type, datum, members.rest(), value.place()});
    }
    return named;
}

ContextEntry readContext(const Part& part)
{
    ContextEntry entry;
    Members members(part);
    entry.place = part.place();
    entry.name = members.need("name").name();
    members.own("context " + inQuotes(entry.name));
    if (const auto values = members.take("values"))
        for (const JsonMember& member : values->members())
        {
            const Part object = values->at(member);
            entry.values.push_back({member.key, readValues(object), object.place()});
        }
    if (const auto named = members.take("named")) entry.named = readNamedValues(*named);
    entry.kept = members.rest();
    return entry;
}

RequestEntry readRequest(const Part& part)
{
    RequestEntry entry;
    entry.place = part.place();
    if (part.isText())
    {
        entry.object = part.name();
        return entry;
    }
    Members members(part);
    entry.object = members.need("object").name();
    if (const auto contexts = members.take("contexts"))
        for (const Part& context : contexts->elements()) entry.contexts.push_back(context.name());
    if (const auto precision = members.take("precision")) entry.precision = precision->number();
    entry.kept = members.rest();
    return entry;
}

SaveEntry readSave(const Part& part)
{
    SaveEntry entry;
    Members members(part);
    entry.place = part.place();
    entry.object = members.need("object").name();
    entry.file = members.need("file").name();
    entry.kept = members.rest();
    return entry;
}

/// Whether names differ, and what is referred to is there.
class References
{
public:
    explicit References(const NetworkDocument& document) : document_(document)
    {
        for (const ObjectEntry& object : document.objects)
            enter(objects_, "object", object.name, object.place);
        for (const ContextEntry& context : document.contexts)
            enter(contexts_, "context", context.name, context.place);
    }

    void check() const
    {
        for (const ObjectEntry& object : document_.objects) checkObject(object);
        for (const ContextEntry& context : document_.contexts) checkContext(context);
        for (const RequestEntry& request : document_.requests)
        {
            needObject(request.object, request.place, "", "request");
            for (const std::string& context : request.contexts)
                if (!contexts_.contains(context))
                    refuse(request.place, "", "request",
                           "there is no context " + inQuotes(context) + " in this file");
        }
        for (const SaveEntry& save : document_.saves)
            needObject(save.object, save.place, "", "save");
    }

private:
    using Names = std::map<std::string_view, Place>;

    [[noreturn]] void refuse(Place place, const std::string& owner, const std::string& key,
                             const std::string& message) const
    {
        throw NetworkError(document_.file, place, owner, key, message);
    }

    void enter(Names& names, const std::string& kind, const std::string& name, Place place) const
    {
        const auto [first, isNew] = names.emplace(name, place);
        if (!isNew)
            refuse(place, kind + " " + inQuotes(name), "name",
                   "line " + std::to_string(first->second.line) + " has another " + kind +
                       " of this name");
    }

    void checkObject(const ObjectEntry& object) const
    {
        const std::string owner = "object " + inQuotes(object.name);
        std::set<std::string_view> ownValues;
        for (const InputValue& value : object.values) ownValues.insert(value.input);
        for (const Connection& connection : object.inputs)
        {
            const std::string key = "inputs." + connection.input;
            needObject(connection.object, connection.place, owner, key);
            if (ownValues.contains(connection.input))
                refuse(connection.place, owner, key,
                       "this input is connected, and has a value of its own as well");
        }
    }

    void checkContext(const ContextEntry& context) const
    {
        const std::string owner = "context " + inQuotes(context.name);
        for (const ContextValues& values : context.values)
            needObject(values.object, values.place, owner, "values." + values.object);
    }

    void needObject(const std::string& name, Place place, const std::string& owner,
                    const std::string& key) const
    {
        if (!objects_.contains(name))
            refuse(place, owner, key, "there is no object " + inQuotes(name) + " in this file");
    }

    const NetworkDocument& document_;
    Names objects_;
    Names contexts_;
};

void readVersion(Members& members)
{
    const Part version = members.need("zelm-network");
    if (!version.node->scalar.is_number_integer()) version.expected("the version, a whole number");
    if (version.node->scalar != NetworkDocument::kVersion)
        version.refuse("this file is of version " + version.node->scalar.dump() +
                       "; this program reads version " + std::to_string(NetworkDocument::kVersion));
}

template <class Entry, class Read>
void readList(Members& members, std::string_view key, std::vector<Entry>& entries, Read&& read)
{
    if (const std::optional<Part> list = members.take(key))
        for (const Part& element : list->elements()) entries.push_back(read(element));
}

NetworkDocument readTree(const JsonTree& tree)
{
    NetworkDocument document;
    document.file = tree.file();
    Members members(Part{&tree, &tree.root(), nullptr, nullptr});
    readVersion(members);
    readList(members, "objects", document.objects, readObject);
    readList(members, "contexts", document.contexts, readContext);
    readList(members, "request", document.requests, readRequest);
    readList(members, "save", document.saves, readSave);
    document.kept = members.rest();
    References(document).check();
    return document;
}

} // namespace

NetworkDocument readNetworkFile(const std::string& file)
{
    return readTree(JsonTree::ofFile(file));
}

NetworkDocument readNetwork(const std::string& file, const std::string& text)
{
    return readTree(JsonTree(file, text));
}

} // namespace Zelm
