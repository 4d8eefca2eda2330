#pragma once

#include <zelm/network/Json.h>

#include <optional>
#include <string>

namespace Zelm
{

/// Who provides a type, which is told by its readable name: the creators with their scores in the
/// order of registration, which of them is chosen, and why.
/// \return nothing if no slot of any creator's objects has such a type.
std::optional<Json> providersOf(const std::string& type);

} // namespace Zelm
