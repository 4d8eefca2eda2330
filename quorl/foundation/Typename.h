#pragma once

#include <quorl/foundation/Export.h>
#include <quorl/foundation/TypeInfo.h>

#include <string>
#include <typeinfo>

namespace Tolmen
{

/// The readable name of a type, such as "double" or "Quorl::VObject". It is a key of registries and
/// stands in cache files, so it is the same in every run and every build with one compiler. Types
/// without linkage of their own (of an unnamed namespace) can share a name.
TOLMEN_API std::string Typename(const std::type_info& type);

/// The same for a type whose module may have left.
TOLMEN_API std::string Typename(const TypeInfo& type);

} // namespace Tolmen
