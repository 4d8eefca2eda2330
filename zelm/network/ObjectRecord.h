#pragma once

#include "Json.h"

#include <quorl/foundation/Interface.h>

#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <utility>

namespace Zelm
{

/// What an object that comes from a file has to remember for being written again. It stands among
/// the object's interfaces.
class ObjectRecord final : public Tolmen::Interface<ObjectRecord>
{
public:
    Json kept;                                ///< keys that nobody here knows
    std::map<std::string, Json> keptOfInputs; ///< the same, of connections
    std::map<std::string, Json> initial;      ///< what the inputs were when it was made
    std::set<std::string> told;               ///< inputs with a value in the file

    /// Which inputs have a value in the file in a context. Its name, which may be long, is shared
    /// by all of them.
    using Place = std::pair<std::shared_ptr<const std::string>, std::string>;
    using Words = std::pair<std::string_view, std::string_view>;
    struct ByWords
    {
        using is_transparent = void;

        static Words of(const Place& place) { return {*place.first, place.second}; }
        static Words of(const Words& words) { return words; }
        bool operator()(const auto& one, const auto& other) const { return of(one) < of(other); }
    };
    std::set<Place, ByWords> toldIn;
};

} // namespace Zelm
