#pragma once

#include "Json.h"

#include <quorl/foundation/Interface.h>

#include <map>
#include <set>
#include <string>
#include <utility>

namespace Zelm
{

/// What an object that comes from a file has to remember for being written again. It stands among
/// the object's interfaces.
class ObjectRecord final : public Tolmen::Interface<ObjectRecord>
{
public:
    Json kept;                                            ///< keys that nobody here knows
    std::map<std::string, Json> keptOfInputs;             ///< the same, of connections
    std::map<std::string, Json> initial;                  ///< what the inputs were when it was made
    std::set<std::string> told;                           ///< inputs with a value in the file
    std::set<std::pair<std::string, std::string>> toldIn; ///< context and input
};

} // namespace Zelm
