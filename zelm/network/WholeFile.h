#pragma once

#include <string>

namespace Zelm
{

/// Writes a file that is whole or as it was before, whatever happens meanwhile: it is written
/// beside it, and renamed.
/// \throws NetworkError with the system's reason if that is not possible.
void writeWholeFile(const std::string& file, const std::string& bytes);

} // namespace Zelm
