#pragma once

#include <nlohmann/json.hpp>

namespace Zelm
{

/// JSON whose members keep the order in which they were entered.
using Json = nlohmann::ordered_json;

} // namespace Zelm
