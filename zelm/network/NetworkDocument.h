#pragma once

#include "Json.h"
#include "NetworkError.h"

#include <string>
#include <utility>
#include <vector>

/// What a network file says, without a network. Each part keeps the keys that this program does not
/// know, to be written back, and where it stands in the file, for messages.
namespace Zelm
{

/// What stands at an input: a number, a truth value, a text, or `{"type": ..., "text": ...}`.
struct InputValue
{
    std::string input;
    Json datum;
    Place place;
};

/// Where an input takes its value from.
struct Connection
{
    /// Which of the source's slots are meant: an object can have an input and an output of a name.
    enum class End
    {
        Any, ///< an output, or else an input
        Output,
        Input, ///< whose parameter is shared
    };

    std::string input;
    std::string object; ///< that provides it
    std::string slot;   ///< of that object
    End end = End::Any;
    std::string member; ///< of the value; empty means the whole
    Json kept = Json::object();
    Place place;
};

struct ObjectEntry
{
    std::string name;
    std::string creator;                                     ///< its key, as "Grid/Hillshade"
    std::string module;                                      ///< that had the creator; may be empty
    std::vector<std::pair<std::string, double>> preferences; ///< words and weights
    std::vector<InputValue> values;                          ///< of all contexts
    std::vector<Connection> inputs;
    Json kept = Json::object();
    Place place;
};

/// What the inputs of one object are in one context.
struct ContextValues
{
    std::string object;
    std::vector<InputValue> values;
    Place place;
};

/// A value of a context that belongs to no object.
struct NamedValue
{
    std::string name;
    std::string type; ///< the readable name, as "double"
    Json datum;
    Json kept = Json::object();
    Place place;
};

struct ContextEntry
{
    std::string name;
    std::vector<ContextValues> values;
    std::vector<NamedValue> named;
    Json kept = Json::object();
    Place place;
};

/// An object that is to be brought up to date.
struct RequestEntry
{
    std::string object;
    std::vector<std::string> contexts; ///< empty means all
    double precision = 1.0;
    Json kept = Json::object();
    Place place;
};

/// An object that is to be saved, by that of its savers which writes files of this kind.
struct SaveEntry
{
    std::string object;
    std::string file;
    Json kept = Json::object();
    Place place;
};

struct NetworkDocument
{
    static constexpr int kVersion = 1;

    std::string file;                 ///< where it was read from; empty if from nowhere
    std::vector<ObjectEntry> objects; ///< in the order in which they are made
    std::vector<ContextEntry> contexts;
    std::vector<RequestEntry> requests;
    std::vector<SaveEntry> saves;
    Json kept = Json::object();
};

} // namespace Zelm
