#pragma once

#include <quorl/foundation/Export.h>

#include <string>

namespace Tolmen
{

/// A pointer as text, in the form that "%p" gives it.
TOLMEN_API std::string to_address_string(const void* address);

} // namespace Tolmen
