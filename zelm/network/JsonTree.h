#pragma once

#include "Json.h"
#include "NetworkError.h"

#include <cstddef>
#include <string>
#include <vector>

namespace Zelm
{

struct JsonMember;

/// A value of a JSON text, and where it begins.
struct JsonNode
{
    enum class Kind
    {
        Scalar,
        Array,
        Object,
    };

    /// The value as it is to be kept, without its places.
    Json plain() const;

    /// What it is, for people: "an object", "a number".
    std::string kindForPeople() const;

    Kind kind = Kind::Scalar;
    std::size_t offset = 0;          ///< in bytes
    Json scalar;                     ///< of a scalar
    std::vector<JsonNode> elements;  ///< of an array
    std::vector<JsonMember> members; ///< of an object, in the order of the text
};

struct JsonMember
{
    std::string key;
    std::size_t offset = 0; ///< of the key, in bytes
    JsonNode value;
};

/// A JSON text with comments, from a file, and its tree.
///
/// Refused, beside what is no JSON: a key that stands twice in an object, and what is nested deeper
/// than `kDeepest`, so that no text can exhaust the stack.
class JsonTree
{
public:
    static constexpr int kDeepest = 100;

    /// \param file the name of the file, for messages.
    /// \throws NetworkError for a text that is refused.
    JsonTree(std::string file, std::string text);

    /// Reads a file. \throws NetworkError also if it cannot be read.
    static JsonTree ofFile(const std::string& file);

    const JsonNode& root() const { return root_; }
    const std::string& file() const { return file_; }
    Place placeOf(std::size_t offset) const;

private:
    std::size_t charactersBefore(std::size_t offset) const;

    std::string file_;
    std::string text_;
    std::vector<std::size_t> lines_;      // where each begins
    std::vector<std::size_t> characters_; // how many are in front of each block of bytes
    JsonNode root_;
};

} // namespace Zelm
