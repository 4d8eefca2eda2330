#include "JsonTree.h"

#include "WholeFile.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <string_view>
#include <utility>

namespace Zelm
{
namespace
{

/// Reads a text for the parser, and tells how far that has come.
class Cursor
{
public:
    using iterator_category = std::input_iterator_tag;
    using value_type = char;
    using difference_type = std::ptrdiff_t;
    using pointer = const char*;
    using reference = const char&;

    Cursor(const char* at, const char** reached) : at_(at), reached_(reached) {}

    const char& operator*() const { return *at_; }
    Cursor& operator++()
    {
        *reached_ = ++at_;
        return *this;
    }
    bool operator==(const Cursor& other) const { return at_ == other.at_; }
    bool operator!=(const Cursor& other) const { return at_ != other.at_; }

private:
    const char* at_;
    const char** reached_;
};

/// Where the next token begins: behind blanks, separators and comments.
std::size_t beginOfToken(std::string_view text, std::size_t from)
{
    constexpr std::string_view kBetweenTokens = " \t\r\n,:";
    constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
    if (from == 0 && text.starts_with(kByteOrderMark)) from = kByteOrderMark.size();
    for (;;)
    {
        from = std::min(text.find_first_not_of(kBetweenTokens, from), text.size());
        if (text.substr(from, 2) == "//")
            from = std::min(text.find('\n', from), text.size());
        else if (text.substr(from, 2) == "/*")
            from = std::min(text.find("*/", from + 2), text.size() - 2) + 2;
        else
            return from;
    }
}

std::size_t endOfNumber(std::string_view text, std::size_t from)
{
    return std::min(text.find_first_not_of("+-.0123456789eE", from), text.size());
}

/// The parser's own words, without its prefix.
std::string reasonOf(const std::exception& error)
{
    const std::string_view words = error.what();
    const auto column = words.find("column ");
    if (column == std::string_view::npos) return std::string(words);
    const auto colon = words.find(": ", column);
    return std::string(colon == std::string_view::npos ? words : words.substr(colon + 2));
}

/// What cannot be a network, and where.
struct Refusal
{
    std::size_t offset;
    std::string reason;
};

/// Builds the tree from what the parser meets.
class TreeBuilder final : public nlohmann::json_sax<Json>
{
public:
    TreeBuilder(std::string_view text, const char* const& reached) : text_(text), reached_(reached)
    {
    }

    bool null() override { return scalar(nullptr); }
    bool boolean(bool truth) override { return scalar(truth); }
    bool number_integer(number_integer_t number) override { return aNumber(number); }
    bool number_unsigned(number_unsigned_t number) override { return aNumber(number); }
    bool number_float(number_float_t number, const string_t& /*digits*/) override
    {
        return aNumber(number);
    }
    bool string(string_t& words) override { return scalar(std::move(words)); }
    bool binary(binary_t& /*bytes*/) override { return false; } // no text has it
    bool start_object(std::size_t /*size*/) override { return begin(JsonNode::Kind::Object); }
    bool start_array(std::size_t /*size*/) override { return begin(JsonNode::Kind::Array); }
    bool end_object() override { return end(); }
    bool end_array() override { return end(); }

    bool key(string_t& name) override
    {
        const std::size_t offset = beginOfToken(text_, behindToken_);
        behindToken_ = reached();
        if (!keys_.back().insert(name).second)
            return refuse(offset, "the key " + inQuotes(name) + " stands here a second time");
        open_.back()->members.push_back({std::move(name), offset, {}});
        return true;
    }

    bool parse_error(std::size_t position, const std::string& /*token*/,
                     const nlohmann::detail::exception& error) override
    {
        return refuse(position == 0 ? 0 : position - 1, reasonOf(error));
    }

    JsonNode root;
    Refusal refusal;

private:
    std::size_t reached() const { return static_cast<std::size_t>(reached_ - text_.data()); }

    bool refuse(std::size_t offset, const std::string& reason)
    {
        refusal = {offset, reason};
        return false;
    }

    JsonNode& place(JsonNode node)
    {
        if (open_.empty()) return root = std::move(node);
        JsonNode& parent = *open_.back();
        if (parent.kind == JsonNode::Kind::Object)
            return parent.members.back().value = std::move(node);
        return parent.elements.emplace_back(std::move(node));
    }

    bool scalar(Json datum)
    {
        JsonNode node;
        node.offset = beginOfToken(text_, behindToken_);
        node.scalar = std::move(datum);
        place(std::move(node));
        behindToken_ = reached();
        return true;
    }

    /// The parser knows that a number is over when it has read what follows.
    bool aNumber(Json datum)
    {
        const std::size_t offset = beginOfToken(text_, behindToken_);
        scalar(std::move(datum));
        behindToken_ = endOfNumber(text_, offset);
        return true;
    }

    /// What is open stays where it is: only the innermost one grows.
    bool begin(JsonNode::Kind kind)
    {
        JsonNode node;
        node.kind = kind;
        node.offset = beginOfToken(text_, behindToken_);
        behindToken_ = reached();
        if (open_.size() == JsonTree::kDeepest)
            return refuse(node.offset, "this is nested more than " +
                                           std::to_string(JsonTree::kDeepest) + " deep");
        open_.push_back(&place(std::move(node)));
        keys_.emplace_back();
        return true;
    }

    bool end()
    {
        behindToken_ = reached();
        open_.pop_back();
        keys_.pop_back();
        return true;
    }

    const std::string_view text_;
    const char* const& reached_;
    std::size_t behindToken_ = 0;
    std::vector<JsonNode*> open_;
    std::vector<std::set<std::string>> keys_; // of what is open
};

constexpr std::size_t kBlock = 1024; // bytes

bool isFirstByte(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0) != 0x80;
}

std::size_t countCharacters(std::string_view text)
{
    return static_cast<std::size_t>(std::ranges::count_if(text, isFirstByte));
}

/// So that a file of one long line is not counted from its beginning for each place.
std::vector<std::size_t> countBlocks(std::string_view text)
{
    std::vector<std::size_t> counts{0};
    for (std::size_t at = 0; at + kBlock <= text.size(); at += kBlock)
        counts.push_back(counts.back() + countCharacters(text.substr(at, kBlock)));
    return counts;
}

std::vector<std::size_t> beginsOfLines(std::string_view text)
{
    std::vector<std::size_t> begins{0};
    for (std::size_t at = text.find('\n'); at != std::string_view::npos;
         at = text.find('\n', at + 1))
        begins.push_back(at + 1);
    return begins;
}

} // namespace

Json JsonNode::plain() const
{
    switch (kind)
    {
        case Kind::Array: {
            Json array = Json::array();
            for (const JsonNode& element : elements) array.push_back(element.plain());
            return array;
        }
        case Kind::Object: {
            Json object = Json::object();
            for (const JsonMember& member :
                 members) // appended without a search, as the keys differ
                object.get_ref<Json::object_t&>().emplace_back(member.key, member.value.plain());
            return object;
        }
        case Kind::Scalar: break;
    }
    return scalar;
}

std::string JsonNode::kindForPeople() const
{
    if (kind == Kind::Object) return "an object";
    if (kind == Kind::Array) return "a list";
    if (scalar.is_string()) return "a text";
    if (scalar.is_number()) return "a number";
    return scalar.dump();
}

JsonTree::JsonTree(std::string file, std::string text)
    : file_(std::move(file)), text_(std::move(text)), lines_(beginsOfLines(text_)),
      characters_(countBlocks(text_))
{
    const char* const begin = text_.data();
    const char* const end = begin + text_.size();
    const char* reached = begin;
    TreeBuilder builder(text_, reached);
    const bool isRead = Json::sax_parse(Cursor(begin, &reached), Cursor(end, &reached), &builder,
                                        nlohmann::detail::input_format_t::json, true, true);
    if (!isRead)
        throw NetworkError(file_, placeOf(builder.refusal.offset), "", "", builder.refusal.reason);
    root_ = std::move(builder.root);
}

JsonTree JsonTree::ofFile(const std::string& file)
{
    return {file, readWholeFile(file)};
}

Place JsonTree::placeOf(std::size_t offset) const
{
    const std::size_t at = std::min(offset, text_.size());
    const auto next = std::ranges::upper_bound(lines_, at);
    const std::size_t column = charactersBefore(at) - charactersBefore(*std::prev(next)) + 1;
    return {static_cast<int>(next - lines_.begin()), static_cast<int>(column)};
}

std::size_t JsonTree::charactersBefore(std::size_t offset) const
{
    const std::size_t block = offset / kBlock;
    return characters_[block] +
           countCharacters(std::string_view(text_).substr(block * kBlock, offset % kBlock));
}

} // namespace Zelm
