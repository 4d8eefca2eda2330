#pragma once

#include <string>
#include <typeinfo>

namespace Zelm
{

/// The name of a type as people and files are told it: that of `Tolmen::Typename`, with "string"
/// for what the standard library calls otherwise, wherever it stands in the name.
std::string typeNameOf(const std::type_info& type);

/// The name by which the kernel knows a type that was told so, or by the kernel's own name.
std::string kernelTypeName(const std::string& told);

} // namespace Zelm
