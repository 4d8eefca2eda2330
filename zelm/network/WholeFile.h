#pragma once

#include <string>

namespace Zelm
{

/// What stands in a file, or comes through a pipe up to its end.
/// \throws NetworkError with the system's reason, and for folders, devices, and pipes that bring
/// more than 64 MiB.
std::string readWholeFile(const std::string& file);

/// Writes a file that is whole or as it was before: see Replacement.
/// \throws NetworkError with the system's reason if that is not possible.
void writeWholeFile(const std::string& file, const std::string& bytes);

} // namespace Zelm
